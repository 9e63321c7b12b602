#include "platform/ui/MsgBox.h"

#include "platform/runtime/ErrorReport.h"

#include <algorithm>
#include <array>
#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QScrollArea>

namespace qor {

namespace {

constexpr int buttonBits = 0x0F;
constexpr int iconBits = 0xF0;

struct ButtonStyle
{
    int style;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton first; ///< the one that Enter presses
    QMessageBox::StandardButton escape;
};

const std::array buttonStyles{
    ButtonStyle{MsgBoxStyle::OkOnly, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok},
    ButtonStyle{MsgBoxStyle::YesNoCancel, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes,
                QMessageBox::Cancel},
    ButtonStyle{MsgBoxStyle::YesNo, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No},
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

struct Answer
{
    QMessageBox::StandardButton button;
    MsgBoxAnswer answer;
};

constexpr std::array answers{
    Answer{QMessageBox::Ok, MsgBoxAnswer::Ok},
    Answer{QMessageBox::Yes, MsgBoxAnswer::Yes},
    Answer{QMessageBox::No, MsgBoxAnswer::No},
    Answer{QMessageBox::Cancel, MsgBoxAnswer::Cancel},
};

/// When the host quits, a box ends without a clicked button.
MsgBoxAnswer AnswerOf(const QMessageBox& box)
{
    const QAbstractButton* pressed = box.clickedButton() ? box.clickedButton() : box.button(QMessageBox::Cancel);
    if (!pressed)
        return MsgBoxAnswer::None;
    const auto* const found =
        std::ranges::find_if(answers, [&](const Answer& entry) { return pressed == box.button(entry.button); });
    return found->answer;
}

void ShowErrorBox(const QString& text, const QString& title, bool critical)
{
    MsgBox(text, critical ? MsgBoxStyle::Critical : MsgBoxStyle::Exclamation, title);
}

/// Whether the toolkit, which breaks lines between words only, would make a box larger than a screen.
bool IsTooLarge(const QString& text, const QFontMetrics& metrics, int width)
{
    constexpr int highestLineCount = 25;
    constexpr int highestLength = 2000;
    if (text.size() > highestLength || text.count(u'\n') >= highestLineCount)
        return true;
    const QStringList words = text.simplified().split(u' ');
    return std::ranges::any_of(words, [&](const QString& word) { return metrics.horizontalAdvance(word) > width; });
}

/// Gives a text that is too large a scroll area, so that the buttons stay in reach.
void MakeScrollable(QMessageBox& box)
{
    constexpr QSize areaSize(560, 360);
    if (!IsTooLarge(box.text(), box.fontMetrics(), areaSize.width()))
        return;
    auto* label = box.findChild<QLabel*>(u"qt_msgbox_label"_s);
    auto* layout = qobject_cast<QGridLayout*>(box.layout());
    if (!label || !layout)
        return;
    auto* area = new QScrollArea(&box);
    area->setObjectName(u"messageArea"_s);
    area->setMinimumSize(areaSize);
    delete layout->replaceWidget(label, area);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    area->setWidget(label);
    area->setWidgetResizable(true);
}

} // namespace

MsgBoxAnswer MsgBox(const QString& text, int style, const QString& title)
{
    QMessageBox box(QApplication::activeWindow());
    box.setAttribute(Qt::WA_QuitOnClose, false); // it may be the only window of a host
    box.setWindowTitle(title);
    box.setTextFormat(Qt::PlainText);
    box.setText(QString(text).remove(u'\r'));
    for (const ButtonStyle& entry : buttonStyles) {
        if (entry.style == (style & buttonBits)) {
            box.setStandardButtons(entry.buttons);
            box.setDefaultButton(entry.first);
            box.setEscapeButton(entry.escape);
        }
    }
    for (const IconStyle& entry : iconStyles) {
        if (entry.style == (style & iconBits))
            box.setIcon(entry.icon);
    }
    MakeScrollable(box);
    box.exec();
    return AnswerOf(box);
}

void InstallErrorBox()
{
    SetErrorBox(ShowErrorBox);
}

} // namespace qor
