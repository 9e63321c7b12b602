#include "form/FindLine.h"

#include "platform/runtime/Text.h"
#include "platform/ui/TextBox.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>

namespace qor {

FindLine::FindLine(QWidget* parent) : QFrame(parent), txtFind(new TextBox(this)), lblFindCount(new QLabel(this))
{
    txtFind->setObjectName(u"txtFind"_s);
    txtFind->setPlaceholderText(u"Find in the directory"_s);
    txtFind->setAccessibleName(u"Find"_s);
    lblFindCount->setObjectName(u"lblFindCount"_s);
    ShowCount(0, 0);
    setFocusProxy(txtFind);

    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 2, 0, 2);
    line->addWidget(txtFind);
    line->addWidget(lblFindCount);
    connect(txtFind, &TextBox::Change, this, &FindLine::TextChanged);
}

QString FindLine::Text() const
{
    return txtFind->text();
}

void FindLine::Edit()
{
    txtFind->setFocus();
    txtFind->selectAll();
}

void FindLine::ShowCount(int position, int count)
{
    lblFindCount->setText(u"%1 of %2"_s.arg(position).arg(count));
    lblFindCount->setAccessibleName(u"Found: "_s + lblFindCount->text());
}

/// Gets the keys that the field does not take.
void FindLine::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && event->modifiers().testFlag(Qt::ShiftModifier))
        Q_EMIT Previous();
    else if (isEnter)
        Q_EMIT Next();
    else if (event->key() == Qt::Key_Escape)
        Q_EMIT Closed();
    else
        QFrame::keyPressEvent(event);
}

} // namespace qor
