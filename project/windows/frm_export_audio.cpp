#include "project/windows/frm_export_audio.h"

#include "platform/qt/core_words.h"
#include "project/mixdown.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <filesystem>

namespace tonvex {

namespace {

/// value, or the nearest row below it.
void Select(QComboBox* box, int value) {
    int row = 0;
    for (int i = 0; i < box->count(); ++i) {
        if (box->itemData(i).toInt() <= value)
            row = i;
    }
    box->setCurrentIndex(row);
}

QString Quality_Row(Audio_Kind kind, int quality) {
    QString text = Core_Words(Quality_Text(kind, quality));
    if (Traits_Of(kind).unit != Quality_Unit::Scale)
        return text;
    const auto all = Traits_Of(kind).qualities;
    return quality == all.front()  ? QObject::tr("%1 (smallest file)").arg(text)
           : quality == all.back() ? QObject::tr("%1 (best sound)").arg(text)
                                   : text;
}

Save_Request Question(const Session& session, Audio_Export entry) {
    const bool wma = entry == Audio_Export::Wma;
    Save_Request request;
    request.title = wma ? "Export to WMA" : "Export to audio";
    for (const Audio_Kind kind : ALL_AUDIO_KINDS) {
        const Audio_Kind_Traits& traits = Traits_Of(kind);
        if (!wma || kind == Audio_Kind::Wma)
            request.filters.push_back(std::string(traits.name) + " (*" + traits.ending + ")");
    }
    request.defaultExtension = Traits_Of(wma ? Audio_Kind::Wma : Audio_Kind::Wav).ending;
    std::filesystem::path song = session.project.Path;
    if (!song.empty())
        request.suggestion = song.replace_extension(request.defaultExtension).string();
    return request;
}

} // namespace

frmExportAudio::frmExportAudio(const Audio_Format& format, const Theme& look, QWidget* parent)
    : Plain_Dialog(look, tr("Export to audio"), QString::fromLatin1(Traits_Of(format.kind).name), parent),
      kind(format.kind) {
    const Audio_Kind_Traits& traits = Traits_Of(kind);
    setObjectName(QStringLiteral("frmExportAudio"));
    auto* rows = new QGridLayout;
    rows->setSpacing(theme.Px(8));
    rows->setColumnStretch(1, 1);
    column->addLayout(rows);
    rates = Add_Row(rows, tr("&Frames a second:"), tr("44100 is that of a CD, 48000 that of films"), "rates");
    for (const int rate : traits.rates)
        rates->addItem(QString::number(rate), rate);
    Select(rates, format.rate);
    qualities = Add_Row(rows, tr("&Quality:"), tr("Better sound makes a larger file"), "qualities");
    for (const int quality : traits.qualities)
        qualities->addItem(Quality_Row(kind, quality), quality);
    Select(qualities, format.quality);

    const Foot foot = Add_Buttons();
    foot.cancel->setToolTip(tr("Writes nothing (Escape)"));
    foot.ok->setText(tr("&Export"));
    foot.ok->setToolTip(tr("Mixes the song down into the file (Enter)"));
    setMinimumWidth(theme.Px(360));
}

QComboBox* frmExportAudio::Add_Row(QGridLayout* rows, const QString& label, const QString& toolTip,
                                   const char* name) {
    const int row = rows->rowCount();
    auto* text = new QLabel(label, this);
    auto* box = new QComboBox(this);
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(QString(label).remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    box->setToolTip(toolTip);
    text->setBuddy(box);
    rows->addWidget(text, row, 0);
    rows->addWidget(box, row, 1);
    return box;
}

Audio_Format frmExportAudio::Format() const {
    return {kind, rates->currentData().toInt(), qualities->currentData().toInt()};
}

void Export_Audio(Session& session, const Theme& theme, Audio_Export entry, QWidget* parent) {
    User_Dialogs& dialogs = session.doors.dialogs;
    const std::filesystem::path file = dialogs.Choose_File_To_Save(Question(session, entry));
    if (file.empty())
        return;
    const Audio_Kind_Traits* const traits = Kind_By_Ending(file);
    if (traits == nullptr) {
        dialogs.Show_Message(Box_Kind::Warning, "The ending of the name picks the kind of file: "
                                                ".wav, .flac, .ogg, .opus, .mp3 or .wma");
        return;
    }
    const bool isWma = traits->kind == Audio_Kind::Wma;
    const int quality = isWma ? session.settings.Global_WMAExport_Bitrate : traits->usualQuality;
    frmExportAudio options({traits->kind, traits->usualRate, quality}, theme, parent);
    if (options.exec() != QDialog::Accepted)
        return;
    const Audio_Format format = options.Format();
    if (isWma)
        session.settings.Global_WMAExport_Bitrate = format.quality;
    Mixdown_Result result;
    {
        const auto progress = dialogs.Begin_Work("Export to audio");
        result = Mixdown(session.Parts(), session.fonts->Sounding_Fonts()).Run(file, format, *progress);
    }
    if (result.outcome == Mixdown_Result::Outcome::Done)
        dialogs.Show_Message(Box_Kind::Information,
                             file.filename().string() + " is ready.\n" + Mixdown_Summary(result));
    else if (result.outcome == Mixdown_Result::Outcome::Failed)
        dialogs.Show_Message(Box_Kind::Warning, "The song could not be exported.\n" + result.error);
}

} // namespace tonvex
