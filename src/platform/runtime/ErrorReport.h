// The component's error report: one wrapper around the body of a procedure.
#pragma once

#include "platform/runtime/RuntimeError.h"

#include <functional>
#include <type_traits>

namespace qor {

/// Shows the text of an error to the user. The user interface installs a message box; without one the
/// text goes to standard error.
using ErrorBox = void (*)(const QString& text, const QString& title, bool critical);
void SetErrorBox(ErrorBox box);

/// The error being handled as a RuntimeError; call it inside a catch block only.
RuntimeError CurrentRuntimeError();

/// "Source: <source> - <procedure> " CR LF "Description: <description>".
QString ErrorReportText(const RuntimeError& error, const QString& procedure);

void ShowErrorReport(const RuntimeError& error, const QString& procedure);
/// Shows an error that no procedure reported before it reached the event loop.
void ShowUnhandledError(const RuntimeError& error);

/// Runs the body of a procedure. An error ends it: scope guards of the body run first, then the error report
/// naming the procedure is shown, and the value-initialised result (False, 0, nothing) is returned.
template <typename Body>
auto ReportErrors(const QString& procedure, Body&& body) -> std::invoke_result_t<Body>
{
    try {
        return std::invoke(std::forward<Body>(body));
    } catch (...) {
        ShowErrorReport(CurrentRuntimeError(), procedure);
    }
    return std::invoke_result_t<Body>();
}

/// Runs what the toolkit calls for an event; no error crosses the event loop.
template <typename Body>
void GuardEvent(Body&& body)
{
    try {
        std::invoke(std::forward<Body>(body));
    } catch (...) {
        ShowUnhandledError(CurrentRuntimeError());
    }
}

} // namespace qor
