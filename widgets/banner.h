#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <functional>
#include <map>

class QVBoxLayout;

namespace tonvex {

/// Notices across the window that block nothing: each a text, perhaps a button, and a cross that closes it.
/// There is one for each subject at most; the newest stands on top. Hidden while there is none.
class Banner final : public QWidget {
    Q_OBJECT
public:
    enum class Subject { Sound, Midi, Recovery_Copy, Videos, First_Steps };

    explicit Banner(const Theme& theme, QWidget* parent = nullptr);
    /// Replaces what is told of the subject. The button closes the notice, then acts; without actionText
    /// there is none.
    void Show_Notice(Subject subject, const QString& text, const QString& actionText,
                     const std::function<void()>& action);
    void Hide_Notice(Subject subject);

private:
    class Notice;

    const Theme& theme;
    QVBoxLayout* column;
    std::map<Subject, Notice*> notices; ///< each from its first showing on
};

} // namespace tonvex
