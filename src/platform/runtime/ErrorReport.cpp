#include "platform/runtime/ErrorReport.h"

#include <cstdio>
#include <new>

namespace qor {

namespace {

void PrintError(const QString& text, const QString& title, bool /*critical*/)
{
    std::fprintf(stderr, "%s: %s\n", qUtf8Printable(title), qUtf8Printable(text));
}

ErrorBox errorBox = PrintError;

} // namespace

void SetErrorBox(ErrorBox box)
{
    errorBox = box;
}

RuntimeError CurrentRuntimeError()
{
    try {
        throw;
    } catch (const RuntimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return {ErrorNumber::OutOfMemory, u"Out of memory. Close other programs and try again."_s};
    } catch (const std::exception& error) {
        return {ErrorNumber::InternalError, QString::fromLocal8Bit(error.what())};
    } catch (...) {
        return {ErrorNumber::InternalError, u"Internal error."_s};
    }
}

QString ErrorReportText(const RuntimeError& error, const QString& procedure)
{
    return u"Source: "_s + error.Source() + u" - "_s + procedure + u" \r\nDescription: "_s + error.Description();
}

void ShowErrorReport(const RuntimeError& error, const QString& procedure)
{
    errorBox(ErrorReportText(error, procedure), u"Error"_s, false);
}

void ShowUnhandledError(const RuntimeError& error)
{
    const auto number = static_cast<int>(error.Number());
    errorBox(u"Run-time error '%1':\r\n\r\n"_s.arg(number) + error.Description(), u"QOR_DIR_NODE"_s, true);
}

} // namespace qor
