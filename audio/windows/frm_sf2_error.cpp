#include "audio/windows/frm_sf2_error.h"

#include "audio/windows/choose_sound_font.h"
#include "widgets/help_view.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tonvex {

frmSF2Error::frmSF2Error(Session& theSession, const Theme& theme, QWidget* parent)
    : QDialog(parent), session(theSession) {
    setWindowTitle(tr("Sound Font files"));
    setObjectName(QStringLiteral("frmSF2Error"));
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    auto* why = new Help_View(theme, session.dataFolder / "help", this);
    why->setMinimumSize(theme.Px(520), theme.Px(300));
    why->Show_Page(QStringLiteral("error-sf2"));
    all->addWidget(why, 1);
    QPushButton* midi =
        Make_Way(tr("Use default &midi device and continue"), "useMidi", &frmSF2Error::Use_Midi_Device);
    const auto devices = session.output->Output_Devices();
    if (std::all_of(devices.begin(), devices.end(), [](const Device_Row& row) { return row.IsSynth == 1; }))
        midi->setToolTip(tr("There is no MIDI device now: the program runs on without sound"));
    all->addWidget(midi);
    all->addWidget(
        Make_Way(tr("&Install a sound font and close Tonvex..."), "install", &frmSF2Error::Install_And_End));
    QPushButton* browse = Make_Way(tr("&Browse for a SF2 file..."), "browse", &frmSF2Error::Browse);
    browse->setDefault(true);
    all->addWidget(browse);
}

QPushButton* frmSF2Error::Make_Way(const QString& text, const char* name, void (frmSF2Error::*chosen)()) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, chosen);
    return button;
}

void frmSF2Error::Use_Midi_Device() {
    const auto devices = session.output->Output_Devices();
    const auto port =
        std::find_if(devices.begin(), devices.end(), [](const Device_Row& row) { return row.IsSynth == 0; });
    if (port != devices.end()) {
        session.settings.Global_MidiSetup_OutDevice = port->DeviceID;
        session.Reopen_Output();
    }
    accept();
}

void frmSF2Error::Browse() {
    const std::string path = Choose_Sound_Font(session.doors.dialogs);
    if (path.empty())
        return;
    session.fonts->Set_CurList({path});
    session.fontsLoaded = session.fonts->Load_CurList_Fonts();
    if (!session.fontsLoaded) {
        session.doors.dialogs.Show_Message(Box_Kind::Warning, tr("Can't open file: ").toStdString() + path,
                                           windowTitle().toStdString());
        return;
    }
    // The next start finds it too.
    session.fonts->DefaultList = {path};
    std::string error;
    if (!session.fonts->Save_DefaultList(error))
        session.doors.dialogs.Show_Message(
            Box_Kind::Warning, tr("The default list could not be saved.").toStdString() + "\n" + error,
            windowTitle().toStdString());
    session.gcm->GCM_SendAllPatches();
    session.hub->Message(this, MSG_GENERAL_UPDATE);
    accept();
}

void frmSF2Error::Install_And_End() {
    session.doors.dialogs.Show_Message(
        Box_Kind::Warning,
        tr("Tonvex closes now. Install the package timgm6mb-soundfont with your package manager, for example "
           "with\n\nsudo apt install timgm6mb-soundfont\n\nand start Tonvex again.")
            .toStdString(),
        windowTitle().toStdString());
    programEnds = true;
    reject();
}

} // namespace tonvex
