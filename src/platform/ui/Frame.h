// A frame with its caption in the top line, so that the controls in it may stand right below the caption.
#pragma once

#include <QGroupBox>

namespace qor {

class Frame : public QGroupBox
{
    Q_OBJECT
public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace qor
