#include "platform/ui/Screen.h"

#include "platform/runtime/Text.h"

#include <array>
#include <QCursor>
#include <QFont>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGuiApplication>

namespace qor {

namespace {

struct Face
{
    QLatin1String family;
    int stretch; ///< in percent: brings the family's widths near those of Tahoma, for which the forms are laid out
};

constexpr std::array faces{
    Face{QLatin1String("Tahoma"), 100},
    Face{QLatin1String("DejaVu Sans"), 80},
    Face{QLatin1String("Noto Sans"), 88},
    Face{QLatin1String("Liberation Sans"), 95},
};

/// The forms are laid out for 96 dots per inch: a point is 4/3 logical pixels whatever the screen says.
constexpr qreal pixelsPerPoint = 96.0 / 72.0;

} // namespace

ScreenPointer::ScreenPointer(Qt::CursorShape shape)
{
    QGuiApplication::setOverrideCursor(QCursor(shape));
}

ScreenPointer::~ScreenPointer()
{
    QGuiApplication::restoreOverrideCursor();
}

QColor ReadableOn(const QColor& background, const QColor& wanted)
{
    constexpr int darkBackground = 128;
    constexpr int lightEnough = 190; // even for blue, the darkest hue
    if (background.lightness() >= darkBackground)
        return wanted;
    return QColor::fromHsl(wanted.hslHue(), wanted.hslSaturation(), qMax(wanted.lightness(), lightEnough));
}

QFont FormFont(qreal points, bool bold)
{
    QFont font = QGuiApplication::font();
    for (const Face& face : faces) {
        if (QFontDatabase::hasFamily(face.family)) {
            font.setFamily(face.family);
            font.setStretch(face.stretch);
            break;
        }
    }
    font.setPixelSize(qRound(points * pixelsPerPoint));
    font.setBold(bold);
    return font;
}

QFont NarrowedToFit(const QFont& font, const QString& text, int width)
{
    const int ownStretch = font.stretch() == QFont::AnyStretch ? QFont::Unstretched : font.stretch();
    QFont narrowed = font;
    for (int stretch = ownStretch - 1;
         stretch >= ownStretch / 2 && QFontMetrics(narrowed).size(Qt::TextSingleLine, text).width() > width; --stretch)
        narrowed.setStretch(stretch);
    return narrowed;
}

} // namespace qor
