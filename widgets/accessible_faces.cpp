#include "widgets/accessible_faces.h"

#include "widgets/level_meter.h"
#include "widgets/piano_view.h"
#include "widgets/segment_selector.h"
#include "widgets/zoom_scroll_bar.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <algorithm>
#include <cmath>
#include <utility>

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

class Choice_Face final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit Choice_Face(Segment_Selector* selectorWidget)
        : QAccessibleWidget(selectorWidget, QAccessible::Slider), selector(*selectorWidget) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? QString::number(selector.Chosen() + 1)
                                          : QAccessibleWidget::text(kind);
    }
    QVariant currentValue() const override { return selector.Chosen() + 1; }
    void setCurrentValue(const QVariant& value) override { selector.Choose(value.toInt() - 1); }
    QVariant maximumValue() const override { return selector.Count(); }
    QVariant minimumValue() const override { return 1; }
    QVariant minimumStepSize() const override { return 1; }

private:
    Segment_Selector& selector;
};

/// Controls of ours that need no more than to be told apart from what is there for layout.
constexpr std::pair<const char*, QAccessible::Role> ROLES[] = {
    {"tonvex::Channel_Row", QAccessible::ListItem},   {"tonvex::PanVolCtrl", QAccessible::Canvas},
    {"tonvex::Keyboard_View", QAccessible::Canvas},   {"tonvex::Piano_Marks", QAccessible::Canvas},
    {"tonvex::Song_Overview", QAccessible::Graphic},  {"tonvex::Staff_View", QAccessible::Graphic},
    {"tonvex::Effect_Picture", QAccessible::Graphic}, {"tonvex::Chord_Chips", QAccessible::Graphic}};

QAccessibleInterface* Make_Face(const QString& className, QObject* object) {
    for (const auto& [name, role] : ROLES)
        if (className == QLatin1String(name))
            return new QAccessibleWidget(qobject_cast<QWidget*>(object), role);
    if (auto* meter = qobject_cast<Level_Meter*>(object))
        return new Meter_Face(meter);
    if (auto* piano = qobject_cast<Piano_View*>(object))
        return new Piano_Face(piano);
    if (auto* selector = qobject_cast<Segment_Selector*>(object))
        return new Choice_Face(selector);
    if (auto* bar = qobject_cast<Zoom_Scroll_Bar*>(object))
        return new Scroll_Face(bar);
    return nullptr;
}

} // namespace

void Install_Accessible_Faces() {
    QAccessible::installFactory(Make_Face);
}

} // namespace tonvex
