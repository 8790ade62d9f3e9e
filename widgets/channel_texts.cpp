#include "widgets/channel_texts.h"

#include <QCoreApplication>

namespace tonvex {

namespace {

constexpr int PAN_CENTRE = 64;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Channel_Texts)
};

} // namespace

QString Patch_Name(const Session& session, int row) {
    const GlobalChannelsManager& table = *session.channels;
    if (!table.Is_Live_Row(row))
        return {};
    const GlobalChannel& channel = table.Channels[static_cast<std::size_t>(row)];
    if (Is_On(channel.IsAudio))
        return Words::tr("Audio");
    const bool drums = channel.OutputChannel == DRUM_SLOT;
    const int rows = drums ? table.DrumPatchCount : table.PatchCount;
    if (channel.PatchI < 0 || channel.PatchI >= rows)
        return Words::tr("Patch %1").arg(channel.PatchI);
    const auto patch = static_cast<std::size_t>(channel.PatchI);
    const std::string& name = drums ? table.Global_DrumPatches[patch].Name : table.Global_Patches[patch].Name;
    return QString::fromStdString(name).simplified();
}

QString Patch_Line(const Session& session, int row) {
    if (!session.channels->Is_Live_Row(row))
        return {};
    const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
    if (Is_On(channel.IsAudio))
        return Words::tr("Audio");
    return Words::tr("%1 · slot %2").arg(Patch_Name(session, row)).arg(channel.OutputChannel);
}

QString Pan_Text(int pan) {
    if (pan == PAN_CENTRE)
        return Words::tr("centre");
    return pan < PAN_CENTRE ? Words::tr("%1 left").arg(PAN_CENTRE - pan)
                            : Words::tr("%1 right").arg(pan - PAN_CENTRE);
}

} // namespace tonvex
