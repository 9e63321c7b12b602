// A button that acts as soon as its underlined letter is pressed with Alt, so that the next key finds its effect. The
// toolkit's button shows itself pressed for a moment first.
#pragma once

#include <QPushButton>

namespace qor {

class CommandButton : public QPushButton
{
    Q_OBJECT
public:
    using QPushButton::QPushButton;

protected:
    bool event(QEvent* event) override;
};

} // namespace qor
