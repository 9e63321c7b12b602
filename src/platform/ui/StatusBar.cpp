#include "platform/ui/StatusBar.h"

#include <QLabel>
#include <QLayout>

namespace qor {

StatusBar::StatusBar(QWidget* parent) : QStatusBar(parent), mPanel(new QLabel(this))
{
    setSizeGripEnabled(false);
    mPanel->setTextFormat(Qt::PlainText);
    addWidget(mPanel);
}

void StatusBar::SetPanelWidth(int width)
{
    mPanel->setFixedWidth(width);
}

QString StatusBar::PanelText() const
{
    return mPanel->text();
}

void StatusBar::SetPanelText(const QString& text)
{
    mPanel->setText(text);
    setAccessibleDescription(text);
    if (isVisible()) {
        layout()->activate();
        repaint();
    }
}

} // namespace qor
