#pragma once

#include "app/session.h"
#include "platform/audio_format.h"
#include "widgets/plain_dialog.h"

class QComboBox;
class QGridLayout;

namespace tonvex {

/// How the song is to be written: frames a second and quality of one kind of sound file. "Export" takes them,
/// "Cancel" and Escape leave all as it was. Interface thread. The look outlives the window.
class frmExportAudio final : public Plain_Dialog {
    Q_OBJECT
public:
    /// format: a kind, and what is selected first.
    frmExportAudio(const Audio_Format& format, const Theme& look, QWidget* parent = nullptr);

    Audio_Format Format() const;

private:
    QComboBox* Add_Row(QGridLayout* rows, const QString& label, const QString& toolTip, const char* name);

    Audio_Kind kind;
    QComboBox* rates = nullptr;
    QComboBox* qualities = nullptr;
};

/// Which entry of the menu was chosen.
enum class Audio_Export { Any, Wma };

/// Asks for a file and how it is to be written, mixes the song down and tells length, peak and loudness. The
/// bit rate of Windows Media Audio is kept in the settings. Interface thread, while no song runs.
void Export_Audio(Session& session, const Theme& theme, Audio_Export entry, QWidget* parent);

} // namespace tonvex
