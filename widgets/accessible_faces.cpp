#include "widgets/accessible_faces.h"

#include "widgets/level_meter.h"
#include "widgets/piano_view.h"
#include "widgets/zoom_scroll_bar.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <algorithm>
#include <cmath>

namespace tonvex {

namespace {

class Meter_Face final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit Meter_Face(Level_Meter* meterWidget)
        : QAccessibleWidget(meterWidget, QAccessible::Indicator), meter(*meterWidget) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? QObject::tr("%1 dB").arg(currentValue().toInt())
                                          : QAccessibleWidget::text(kind);
    }
    QVariant currentValue() const override {
        const double height = std::max(meter.Height(0), meter.Height(1));
        return static_cast<int>(std::lround((height - 1.0) * Level_Meter::RANGE_DB));
    }
    void setCurrentValue(const QVariant&) override {}
    QVariant maximumValue() const override { return 0; }
    QVariant minimumValue() const override { return -static_cast<int>(Level_Meter::RANGE_DB); }
    QVariant minimumStepSize() const override { return 1; }

private:
    const Level_Meter& meter;
};

class Piano_Face final : public QAccessibleWidget {
public:
    explicit Piano_Face(Piano_View* pianoWidget)
        : QAccessibleWidget(pianoWidget, QAccessible::Graphic), piano(*pianoWidget) {}

    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Value)
            return QAccessibleWidget::text(kind);
        QStringList sounding;
        for (int note = 0; note < 128; ++note)
            if (piano.Is_Lit(note))
                sounding << piano.Note_Name(note);
        return sounding.join(QLatin1Char(' '));
    }

private:
    const Piano_View& piano;
};

class Scroll_Face final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit Scroll_Face(Zoom_Scroll_Bar* barWidget)
        : QAccessibleWidget(barWidget, QAccessible::ScrollBar), bar(*barWidget) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? bar.Told() : QAccessibleWidget::text(kind);
    }
    QVariant currentValue() const override { return bar.First(); }
    void setCurrentValue(const QVariant& value) override { bar.Ask_For(value.toDouble(), bar.Length()); }
    QVariant maximumValue() const override { return std::max(bar.Begin(), bar.End() - bar.Length()); }
    QVariant minimumValue() const override { return bar.Begin(); }
    QVariant minimumStepSize() const override { return bar.Length() / 10.0; }

private:
    Zoom_Scroll_Bar& bar;
};

QAccessibleInterface* Make_Face(const QString&, QObject* object) {
    if (auto* meter = qobject_cast<Level_Meter*>(object))
        return new Meter_Face(meter);
    if (auto* piano = qobject_cast<Piano_View*>(object))
        return new Piano_Face(piano);
    if (auto* bar = qobject_cast<Zoom_Scroll_Bar*>(object))
        return new Scroll_Face(bar);
    return nullptr;
}

} // namespace

void Install_Accessible_Faces() {
    QAccessible::installFactory(Make_Face);
}

} // namespace tonvex
