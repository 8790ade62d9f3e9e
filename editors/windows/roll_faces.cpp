#include "editors/windows/roll_faces.h"

#include "editors/windows/roll_view.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>

#include <map>
#include <set>

namespace tonvex {

namespace {

/// One event in view.
class Event_Face final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    Event_Face(Roll_View* owner, std::int32_t id) : view(owner), eventId(id) {}

    bool isValid() const override { return view != nullptr && Row() != nullptr; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return view == nullptr ? nullptr : view->window()->windowHandle(); }
    QAccessibleInterface* parent() const override {
        return view == nullptr ? nullptr : QAccessible::queryAccessibleInterface(view);
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    void setText(QAccessible::Text, const QString&) override {}
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name && isValid() ? view->Spoken(eventId) : QString();
    }
    QRect rect() const override {
        const Ev_Display_Row* row = isValid() ? Row() : nullptr;
        if (row == nullptr)
            return {};
        const QRect box = view->Painter().Box_Of(*row).toAlignedRect();
        return {view->mapToGlobal(box.topLeft()), box.size()};
    }
    QAccessible::State state() const override {
        QAccessible::State told;
        const Ev_Display_Row* row = isValid() ? Row() : nullptr;
        told.invalid = row == nullptr;
        told.selectable = true;
        told.multiSelectable = true;
        told.selected = row != nullptr && row->Selected;
        told.focusable = true;
        told.focused = told.selected && view != nullptr && view->hasFocus();
        return told;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {QAccessibleActionInterface::pressAction()}; }
    void doAction(const QString& name) override {
        if (name != QAccessibleActionInterface::pressAction() || !isValid())
            return;
        view->Display().Own().Select({eventId});
        view->Changed();
        emit view->selectionChanged();
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    const Ev_Display_Row* Row() const {
        const Event_List& events = view->Display().Own();
        const int row = events.Row_Of(eventId);
        return row < 0 ? nullptr : &events.Rows()[static_cast<std::size_t>(row)];
    }

    QPointer<Roll_View> view;
    std::int32_t eventId;
};

class Roll_Face final : public QAccessibleWidget {
public:
    explicit Roll_Face(Roll_View* owner) : QAccessibleWidget(owner, QAccessible::List), view(*owner) {}
    ~Roll_Face() override {
        for (const auto& [eventId, face] : faces)
            QAccessible::deleteAccessibleInterface(face);
    }

    int childCount() const override { return static_cast<int>(In_View().size()); }
    QAccessibleInterface* child(int index) const override {
        const std::vector<std::int32_t> ids = In_View();
        if (index < 0 || static_cast<std::size_t>(index) >= ids.size())
            return nullptr;
        const std::int32_t eventId = ids[static_cast<std::size_t>(index)];
        Forget_Others(ids);
        const auto found = faces.find(eventId);
        if (found != faces.end())
            return QAccessible::accessibleInterface(found->second);
        auto* made = new Event_Face(&view, eventId);
        faces.emplace(eventId, QAccessible::registerAccessibleInterface(made));
        return made;
    }
    int indexOfChild(const QAccessibleInterface* asked) const override {
        const std::vector<std::int32_t> ids = In_View();
        for (std::size_t i = 0; i < ids.size(); ++i) {
            const auto found = faces.find(ids[i]);
            if (found != faces.end() && QAccessible::accessibleInterface(found->second) == asked)
                return static_cast<int>(i);
        }
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = 0; i < childCount(); ++i)
            if (QAccessibleInterface* one = child(i); one != nullptr && one->rect().contains(x, y))
                return one;
        return nullptr;
    }
    QAccessibleInterface* focusChild() const override {
        for (int i = 0; i < childCount(); ++i)
            if (QAccessibleInterface* one = child(i); one != nullptr && one->state().focused)
                return one;
        return nullptr;
    }

private:
    std::vector<std::int32_t> In_View() const {
        std::vector<std::int32_t> ids;
        const Roll_Painter painter = view.Painter();
        const QRectF area(painter.Layout().Roll);
        const Event_List& events = view.Display().Own();
        events.Visit(painter.Beat_At(area.left()), painter.Beat_At(area.right()), [&](std::size_t i) {
            if (painter.Box_Of(events.Rows()[i]).intersects(area))
                ids.push_back(events.Rows()[i].EventID);
        });
        return ids;
    }
    /// Objects of events that have left the view go once there are many.
    void Forget_Others(const std::vector<std::int32_t>& inView) const {
        constexpr std::size_t MANY = 4096;
        if (faces.size() < MANY)
            return;
        const std::set<std::int32_t> kept(inView.begin(), inView.end());
        for (auto face = faces.begin(); face != faces.end();) {
            if (kept.count(face->first) > 0) {
                ++face;
                continue;
            }
            QAccessible::deleteAccessibleInterface(face->second);
            face = faces.erase(face);
        }
    }

    Roll_View& view;
    mutable std::map<std::int32_t, QAccessible::Id> faces;
};

QAccessibleInterface* Make_Face(const QString&, QObject* object) {
    auto* view = qobject_cast<Roll_View*>(object);
    return view == nullptr ? nullptr : new Roll_Face(view);
}

} // namespace

void Install_Roll_Faces() {
    QAccessible::installFactory(Make_Face);
}

} // namespace tonvex
