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

/// A text that is longer than a screen can show is given a scroll area, so that the buttons stay in reach.
void MakeScrollable(QMessageBox& box)
{
    constexpr int highestLineCount = 25;
    constexpr int longestLine = 120;
    constexpr QSize areaSize(560, 360);
    const QStringList lines = box.text().split(u'\n');
    const bool tooLong =
        lines.size() > highestLineCount ||
        std::any_of(lines.begin(), lines.end(), [](const QString& line) { return line.size() > longestLine; });
    auto* label = box.findChild<QLabel*>(u"qt_msgbox_label"_s);
    auto* layout = qobject_cast<QGridLayout*>(box.layout());
    if (!tooLong || !label || !layout)
        return;
    auto* area = new QScrollArea(&box);
    area->setObjectName(u"messageArea"_s);
    area->setMinimumSize(areaSize);
    layout->replaceWidget(label, area);
    label->setWordWrap(false);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    area->setWidget(label);
    area->setWidgetResizable(true);
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
    MakeScrollable(box);
    return AnswerOf(box.exec());
}

void InstallErrorBox()
{
    SetErrorBox(ShowErrorBox);
}

} // namespace qor
