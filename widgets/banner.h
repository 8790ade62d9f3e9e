#pragma once

#include "widgets/theme.h"

#include <QWidget>

#include <functional>
#include <map>
#include <vector>

class QVBoxLayout;

namespace tonvex {

/// Notices across the window that block nothing: each a text, perhaps a button, and a cross that closes it.
/// There is one for each subject at most; the newest stands on top, alone where the window is low. Who
/// holds the banner shows it while there is any.
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
    /// The window has another size.
    void Fit();

signals:
    void anyShown(bool any);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    class Notice;
    void Refresh();

    const Theme& theme;
    QVBoxLayout* column;
    std::map<Subject, Notice*> notices; ///< each from its first showing on
    std::vector<Notice*> standing;      ///< what is to be told, the newest first
};

} // namespace tonvex
