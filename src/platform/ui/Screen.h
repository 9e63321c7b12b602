// Measures, colours and the pointer of the screen.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QtGlobal>

namespace qor {

/// 15 twips are one logical pixel.
constexpr int TwipsToPixels(int twips)
{
    return (twips + 7) / 15;
}

/// Gives the pointer this shape for as long as it lives.
class ScreenPointer
{
public:
    explicit ScreenPointer(Qt::CursorShape shape);
    ~ScreenPointer();
    ScreenPointer(const ScreenPointer&) = delete;
    ScreenPointer& operator=(const ScreenPointer&) = delete;
};

class HourglassPointer : public ScreenPointer
{
public:
    HourglassPointer() : ScreenPointer(Qt::WaitCursor) {}
};

/// The default pointer in the middle of an hourglass.
class DefaultPointer : public ScreenPointer
{
public:
    DefaultPointer() : ScreenPointer(Qt::ArrowCursor) {}
};

/// The wanted colour if it can be read on the background, else a lighter one of the same hue.
QColor ReadableOn(const QColor& background, const QColor& wanted);

/// The font of the forms: Tahoma if it is installed, else the nearest condensed sans.
QFont FormFont(qreal points, bool bold = false);

/// The font, narrowed until the text fits into this width, but to no less than half its own.
QFont NarrowedToFit(const QFont& font, const QString& text, int width);

} // namespace qor
