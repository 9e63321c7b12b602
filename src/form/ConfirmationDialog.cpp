#include "form/ConfirmationDialog.h"

#include "platform/com/Dispatch.h"
#include "platform/runtime/ErrorReport.h"
#include "rules/MessageNodes.h"

#include <array>
#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace qor {

namespace {

struct AnswerButton
{
    const char* name;
    const char* caption;
    ConfirmationAnswer answer;
};

constexpr std::array answerButtons{
    AnswerButton{"cmdYes", "&Yes", ConfirmationAnswer::Yes},
    AnswerButton{"cmdYesToAll", "Yes to &All", ConfirmationAnswer::YesToAll},
    AnswerButton{"cmdNo", "&No", ConfirmationAnswer::No},
    AnswerButton{"cmdStop", "&Stop", ConfirmationAnswer::Stop},
};

QLayout* QuestionRow(QDialog& dialog, const QString& text)
{
    auto* icon = new QLabel(&dialog);
    const int size = dialog.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &dialog);
    icon->setPixmap(dialog.style()->standardIcon(QStyle::SP_MessageBoxQuestion).pixmap(size, size));
    auto* question = new QLabel(QString(text).remove(u'\r'), &dialog);
    question->setObjectName(u"lblQuestion"_s);
    question->setTextFormat(Qt::PlainText);
    auto* row = new QHBoxLayout;
    row->addWidget(icon);
    row->addWidget(question, 1);
    return row;
}

QLayout* ButtonRow(QDialog& dialog)
{
    auto* row = new QHBoxLayout;
    row->addStretch();
    for (const AnswerButton& entry : answerButtons) {
        auto* button = new QPushButton(QLatin1String(entry.caption), &dialog);
        button->setObjectName(QLatin1String(entry.name));
        QObject::connect(button, &QPushButton::clicked, &dialog,
                         [&dialog, answer = entry.answer] { dialog.done(static_cast<int>(answer)); });
        row->addWidget(button);
    }
    return row;
}

/// Escape and the close box answer 0.
int Ask(const QString& text, const QString& title)
{
    QDialog dialog(QApplication::activeWindow());
    dialog.setAttribute(Qt::WA_QuitOnClose, false);
    dialog.setWindowTitle(title);
    dialog.setAccessibleDescription(text);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addLayout(QuestionRow(dialog, text));
    layout->addLayout(ButtonRow(dialog));
    layout->setSizeConstraint(QLayout::SetFixedSize);
    return dialog.exec();
}

constexpr DISPID askId = 1;
constexpr std::array members{DispatchMember{askId, QLatin1String("Ask"), 2}};

class ConfirmationDialog final : public DispatchObject<IDispatch>
{
public:
    ConfirmationDialog() : DispatchObject(IID_IDispatch, members) {}

protected:
    HRESULT Call(DISPID /*member*/, const DISPPARAMS& arguments, VARIANT* result, std::uint32_t* badArgument) override
    {
        QString text;
        QString title;
        if (const HRESULT problem = TextIn(arguments, 0, text, badArgument); problem != S_OK)
            return problem;
        if (const HRESULT problem = TextIn(arguments, 1, title, badArgument); problem != S_OK)
            return problem;
        const int answer = Ask(text, title);
        if (result)
            *result = IntegerResult(answer);
        return S_OK;
    }
};

} // namespace

IDispatch* MakeConfirmationDialog()
{
    return new ConfirmationDialog;
}

} // namespace qor
