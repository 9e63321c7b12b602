// The status bar with its one panel.
#pragma once

#include <QStatusBar>

class QLabel;

namespace qor {

class StatusBar : public QStatusBar
{
    Q_OBJECT
public:
    explicit StatusBar(QWidget* parent = nullptr);

    /// The panel's width in logical pixels.
    void SetPanelWidth(int width);
    QString PanelText() const;
    /// Sets the text and paints it at once, before the work that it announces begins.
    void SetPanelText(const QString& text);

private:
    QLabel* mPanel;
};

} // namespace qor
