#pragma once

#include "editors/windows/roll_layout.h"
#include "song/notes_stuff.h"
#include "widgets/plain_dialog.h"

#include <utility>
#include <vector>

class QCheckBox;
class QComboBox;

namespace tonvex {

/// What the events editor shows, how notes are named, and the way to the sound fonts. Interface thread.
class frmEvEd_View final : public Plain_Dialog {
    Q_OBJECT
public:
    frmEvEd_View(const Theme& look, const Roll_Options& options, const NotesStuff& notes,
                 QWidget* parent = nullptr);

    Roll_Options Options() const;
    /// 0 to 3, column of the note names.
    int Notation() const;

signals:
    void soundFontsWanted();

private:
    std::vector<std::pair<QCheckBox*, bool Roll_Options::*>> checks;
    QComboBox* notation = nullptr;
};

} // namespace tonvex
