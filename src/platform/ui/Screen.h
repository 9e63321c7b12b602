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

/// A pointer of this shape for as long as it lives.
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

/// The default pointer, within the work of an hourglass.
class DefaultPointer : public ScreenPointer
{
public:
    DefaultPointer() : ScreenPointer(Qt::ArrowCursor) {}
};

/// The wanted colour where it can be read on the background, else a lighter one of the same hue.
QColor ReadableOn(const QColor& background, const QColor& wanted);

/// The face of the forms: Tahoma where it is installed, else the nearest condensed sans.
QFont FormFont(qreal points, bool bold = false);

/// The font, drawn as much narrower as the text needs to fit into this width; at most to half of its own.
QFont NarrowedToFit(const QFont& font, const QString& text, int width);

} // namespace qor
