#include "form/NavigationIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace qor {

namespace {

/// A triangle that points to the next or the previous node, with a bar in front of it for the last or the
/// first.
class NavigationIconEngine : public QIconEngine
{
public:
    explicit NavigationIconEngine(NavigationIcon icon) : mIcon(icon) {}

    QIconEngine* clone() const override { return new NavigationIconEngine(mIcon); }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(QGuiApplication::palette().color(group, QPalette::ButtonText));
        painter->translate(rect.center() + QPointF(0.5, 0.5));
        painter->scale(rect.width() / 16.0, rect.height() / 16.0);
        if (mIcon == NavigationIcon::First || mIcon == NavigationIcon::Previous)
            painter->scale(-1, 1);
        const bool bar = mIcon == NavigationIcon::First || mIcon == NavigationIcon::Last;
        const double tip = bar ? 2 : 4;
        const QPointF triangle[] = {{tip - 7, -5}, {tip, 0}, {tip - 7, 5}};
        painter->drawPolygon(triangle, 3);
        if (bar)
            painter->drawRect(QRectF(3, -5, 2, 10));
        painter->restore();
    }

private:
    NavigationIcon mIcon;
};

} // namespace

QIcon MakeNavigationIcon(NavigationIcon icon)
{
    return QIcon(new NavigationIconEngine(icon));
}

} // namespace qor
