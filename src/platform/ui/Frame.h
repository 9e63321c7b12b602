// A frame with its caption in the top line, so that its controls can stand right below.
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
