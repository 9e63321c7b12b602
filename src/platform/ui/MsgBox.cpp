#include "platform/ui/MsgBox.h"

#include "platform/runtime/ErrorReport.h"

#include <array>
#include <QApplication>
#include <QMessageBox>

namespace qor {

namespace {

constexpr int buttonBits = 0x0F;
constexpr int iconBits = 0xF0;

struct ButtonStyle
{
    int style;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton escape;
};

const std::array buttonStyles{
    ButtonStyle{MsgBoxStyle::OkOnly, QMessageBox::Ok, QMessageBox::Ok},
    ButtonStyle{MsgBoxStyle::YesNoCancel, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                QMessageBox::Cancel},
    ButtonStyle{MsgBoxStyle::YesNo, QMessageBox::Yes | QMessageBox::No, QMessageBox::No},
};

struct IconStyle
{
    int style;
    QMessageBox::Icon icon;
};

constexpr std::array iconStyles{
    IconStyle{MsgBoxStyle::Critical, QMessageBox::Critical},
    IconStyle{MsgBoxStyle::Question, QMessageBox::Question},
    IconStyle{MsgBoxStyle::Exclamation, QMessageBox::Warning},
    IconStyle{MsgBoxStyle::Information, QMessageBox::Information},
};

MsgBoxAnswer AnswerOf(int button)
{
    switch (button) {
    case QMessageBox::Yes:
        return MsgBoxAnswer::Yes;
    case QMessageBox::No:
        return MsgBoxAnswer::No;
    case QMessageBox::Cancel:
        return MsgBoxAnswer::Cancel;
    default:
        return MsgBoxAnswer::Ok;
    }
}

void ShowErrorBox(const QString& text, const QString& title, bool critical)
{
    MsgBox(text, critical ? MsgBoxStyle::Critical : MsgBoxStyle::Exclamation, title);
}

} // namespace

MsgBoxAnswer MsgBox(const QString& text, int style, const QString& title)
{
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(title);
    box.setTextFormat(Qt::PlainText);
    box.setText(QString(text).remove(u'\r'));
    for (const ButtonStyle& entry : buttonStyles) {
        if (entry.style == (style & buttonBits)) {
            box.setStandardButtons(entry.buttons);
            box.setEscapeButton(entry.escape);
        }
    }
    for (const IconStyle& entry : iconStyles) {
        if (entry.style == (style & iconBits))
            box.setIcon(entry.icon);
    }
    return AnswerOf(box.exec());
}

void InstallErrorBox()
{
    SetErrorBox(ShowErrorBox);
}

} // namespace qor
