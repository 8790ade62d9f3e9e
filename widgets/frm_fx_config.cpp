#include "widgets/frm_fx_config.h"

#include "platform/qt/core_words.h"
#include "song/effect_records.h"
#include "widgets/effect_picture.h"
#include "widgets/scroll_part.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace tonvex {

namespace {

constexpr int LEAST_HEIGHT = 200;

bool Is_Frequency(const Effect_Parameter& parameter) {
    return parameter.least >= 100.0F;
}

QString Whole_Figure(const Effect_Parameter& parameter, int value) {
    if (std::string_view(parameter.name) == "Waveform")
        return value == 0 ? QObject::tr("Triangle") : QObject::tr("Sine");
    if (std::string_view(parameter.name) == "Phase")
        return QStringLiteral("%1°").arg((value - 2) * 90);
    return value == 0 ? QObject::tr("No") : QObject::tr("Yes");
}

int Single_Step(const QSlider& slider) {
    return std::max(1, slider.pageStep() / 10);
}

/// The text with the first of its letters that is not taken yet as its key.
QString With_Mnemonic(const QString& text, QString& taken) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isLetter() || taken.contains(text[i], Qt::CaseInsensitive))
            continue;
        taken += text[i];
        return text.left(i) + QLatin1Char('&') + text.mid(i);
    }
    return text;
}

} // namespace

QString Effect_Caption(Effect_Kind kind) {
    switch (kind) {
    case Effect_Kind::Reverb:
        return QObject::tr("Reverb");
    case Effect_Kind::Chorus:
        return QObject::tr("Chorus");
    case Effect_Kind::Flanger:
        return QObject::tr("Flanger");
    case Effect_Kind::Echo:
        return QObject::tr("Echo");
    case Effect_Kind::Distortion:
        break;
    }
    return QObject::tr("Distortion");
}

frmFX_Config::frmFX_Config(Session& owner, const Theme& look, QWidget* parent)
    : QDialog(parent), session(owner), theme(look), about(new QLabel(this)),
      hint(new QLabel(tr("Effects are only available when using the SoundFont synthesizer"), this)),
      tabs(new QTabWidget(this)), gesture(owner, this) {
    setObjectName(QStringLiteral("frmFX_Config"));
    about->setFont(theme.Font(Text_Size::Title, QFont::DemiBold));
    about->setTextFormat(Qt::PlainText);
    hint->setWordWrap(true);
    hint->setProperty("dim", true);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(16));
    all->addWidget(about);
    all->addWidget(hint);
    for (const Effect_Kind kind : ALL_EFFECTS)
        tabs->addTab(new Scroll_Part(theme, Make_Page(kind), {0, LEAST_HEIGHT}, tabs), Effect_Caption(kind));
    all->addWidget(tabs, 1);
    auto* buttons = new QHBoxLayout;
    auto* close = new QPushButton(tr("&Close"), this);
    close->setObjectName(QStringLiteral("close"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    buttons->addStretch(1);
    buttons->addWidget(close);
    all->addLayout(buttons);
    pause.setSingleShot(true);
    pause.setInterval(PAUSE_MS);
    connect(&pause, &QTimer::timeout, this, &frmFX_Config::End_Gesture);
    subscription = session.events.Subscribe([this](int msg, std::int32_t, const std::string&) {
        if (isVisible() && (msg == MSG_SET_EFFECTS || msg == MSG_SET_NAME || msg == MSG_SET_OUTPUT ||
                            msg == MSG_GENERAL_UPDATE))
            Refresh();
    });
}

frmFX_Config::~frmFX_Config() {
    session.events.Unsubscribe(subscription);
}

QWidget* frmFX_Config::Make_Page(Effect_Kind kind) {
    Page& page = pages[static_cast<std::size_t>(kind)];
    auto* sheet = new QWidget(tabs);
    sheet->setObjectName(Effect_Caption(kind));
    auto* grid = new QGridLayout(sheet);
    grid->setContentsMargins(theme.Px(16), theme.Px(16), theme.Px(16), theme.Px(16));
    grid->setHorizontalSpacing(theme.Px(16));
    grid->setVerticalSpacing(theme.Px(8));
    page.on = new QCheckBox(tr("%1 o&n").arg(Effect_Caption(kind)), sheet);
    connect(page.on, &QCheckBox::clicked, this, [this, kind](bool on) {
        End_Gesture();
        session.hub->Message(this, MSG_SET_EFFECTS, channelId, static_cast<std::int32_t>(kind), on);
    });
    auto* reset = new QPushButton(tr("&Reset"), sheet);
    reset->setObjectName(QStringLiteral("reset"));
    reset->setAutoDefault(false);
    reset->setToolTip(tr("Sets every value of this effect to what it is in a new song"));
    connect(reset, &QPushButton::clicked, this, [this, kind] { Reset(kind); });
    QString letters = QStringLiteral("ncr"); // of the check above, of "Close" and of "Reset"
    grid->addWidget(page.on, 0, 0, 1, 2);
    grid->addWidget(reset, 0, 2);
    page.picture = new Effect_Picture(theme, kind, sheet);
    page.picture->setAccessibleName(tr("Picture of the %1").arg(Effect_Caption(kind)));
    page.picture->setToolTip(tr("What the values below do"));
    grid->addWidget(page.picture, 1, 0, 1, 3);
    constexpr int FIRST_LINE = 2;
    int line = FIRST_LINE;
    for (const Effect_Parameter& parameter : Parameters_Of(kind)) {
        auto* label = new QLabel(With_Mnemonic(Core_Words(parameter.name), letters), sheet);
        auto* slider = new QSlider(Qt::Horizontal, sheet);
        auto* figure = new QLabel(sheet);
        slider->setAccessibleName(Core_Words(parameter.name));
        slider->setRange(parameter.whole ? static_cast<int>(parameter.least) : 0,
                         parameter.whole ? static_cast<int>(parameter.most) : STEPS);
        slider->setPageStep(parameter.whole ? 1 : STEPS / 20);
        slider->setSingleStep(Single_Step(*slider));
        slider->setMinimumWidth(theme.Px(220));
        slider->setToolTip(
            tr("Wheel and arrow keys, with Shift fine; double click: the value of a new song"));
        slider->installEventFilter(this);
        label->setBuddy(slider);
        figure->setFont(theme.Digits(Text_Size::Body));
        figure->setMinimumWidth(theme.Px(90));
        figure->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        const auto place = static_cast<std::size_t>(line - FIRST_LINE);
        connect(slider, &QSlider::valueChanged, this,
                [this, kind, place](int step) { Change(kind, place, step); });
        connect(slider, &QSlider::sliderReleased, this, &frmFX_Config::End_Gesture);
        grid->addWidget(label, line, 0);
        grid->addWidget(slider, line, 1);
        grid->addWidget(figure, line, 2);
        page.sliders.push_back(slider);
        page.figures.push_back(figure);
        ++line;
    }
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(line, 1);
    return sheet;
}

int frmFX_Config::Step_Of(const Effect_Parameter& parameter, float value) {
    if (parameter.whole)
        return static_cast<int>(value);
    const float share = Is_Frequency(parameter)
                            ? std::log(value / parameter.least) / std::log(parameter.most / parameter.least)
                            : (value - parameter.least) / (parameter.most - parameter.least);
    return static_cast<int>(std::lround(share * STEPS));
}

float frmFX_Config::Value_At(const Effect_Parameter& parameter, int step) {
    if (parameter.whole)
        return static_cast<float>(step);
    // These are reached whole, whatever the step's rounding makes of them.
    if (step == STEPS)
        return parameter.most;
    if (step == Step_Of(parameter, parameter.neutral))
        return parameter.neutral;
    const float share = static_cast<float>(step) / STEPS;
    return Is_Frequency(parameter) ? parameter.least * std::pow(parameter.most / parameter.least, share)
                                   : parameter.least + share * (parameter.most - parameter.least);
}

QString frmFX_Config::Figure(const Effect_Parameter& parameter, float value) {
    if (parameter.whole)
        return Whole_Figure(parameter, static_cast<int>(value));
    const float range = parameter.most - parameter.least;
    const int digits = range <= 1.0F ? 3 : range <= 20.0F ? 2 : range <= 200.0F ? 1 : 0;
    return QStringLiteral("%1 %2")
        .arg(static_cast<double>(value), 0, 'f', digits)
        .arg(QLatin1String(parameter.unit))
        .trimmed();
}

int frmFX_Config::Row() const {
    return session.channels->Effect_Row(session.channels->ChannelI(channelId));
}

void frmFX_Config::Change(Effect_Kind kind, std::size_t parameter, int step) {
    const Effect_Parameter& turned = Parameters_Of(kind)[parameter];
    const Page& page = pages[static_cast<std::size_t>(kind)];
    gesture.Turn(channelId, kind, parameter, Value_At(turned, step));
    page.figures[parameter]->setText(Figure(turned, gesture.Values(channelId, kind)[parameter]));
    Show_Picture(kind);
    if (page.sliders[parameter]->isSliderDown())
        pause.stop();
    else
        pause.start();
}

void frmFX_Config::Show_Picture(Effect_Kind kind) {
    const Page& page = pages[static_cast<std::size_t>(kind)];
    page.picture->Show_Values(gesture.Values(channelId, kind), page.on->isChecked());
}

void frmFX_Config::End_Gesture() {
    pause.stop();
    gesture.End();
}

void frmFX_Config::Reset(Effect_Kind kind) {
    pause.stop();
    gesture.Cancel();
    const Effect_Values neutral = Neutral_Values(kind);
    if (gesture.Values(channelId, kind) != neutral)
        session.hub->Message(this, MSG_SET_EFFECTS, channelId, static_cast<std::int32_t>(kind),
                             std::monostate{}, Effect_Record_Text(kind, neutral));
    Refresh();
}

/// Whoever turns to another window has ended the gesture.
bool frmFX_Config::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Hide)
        End_Gesture();
    return QDialog::event(event);
}

bool frmFX_Config::eventFilter(QObject* watched, QEvent* event) {
    auto* slider = qobject_cast<QSlider*>(watched);
    if (slider != nullptr && (event->type() == QEvent::KeyPress || event->type() == QEvent::Wheel)) {
        const bool fine = static_cast<QInputEvent*>(event)->modifiers().testFlag(Qt::ShiftModifier);
        slider->setSingleStep(fine ? 1 : Single_Step(*slider));
        if (fine && event->type() == QEvent::Wheel) {
            // Qt would turn pages. Some desktops turn the wheel sideways with Shift.
            const QPoint turned = static_cast<QWheelEvent*>(event)->angleDelta();
            slider->setValue(slider->value() + (turned.x() + turned.y() > 0 ? 1 : -1));
            return true;
        }
    }
    if (event->type() == QEvent::MouseButtonDblClick) {
        for (const Effect_Kind kind : ALL_EFFECTS) {
            const auto& sliders = pages[static_cast<std::size_t>(kind)].sliders;
            const auto turned = std::find(sliders.begin(), sliders.end(), watched);
            if (turned == sliders.end())
                continue;
            const auto place = static_cast<std::size_t>(turned - sliders.begin());
            (*turned)->setSliderDown(false); // by the first of the two clicks
            (*turned)->setValue(Step_Of(Parameters_Of(kind)[place], Neutral_Values(kind)[place]));
            End_Gesture();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmFX_Config::Show_Channel(std::int32_t newId) {
    if (newId == channelId || !isVisible())
        return;
    End_Gesture();
    channelId = newId;
    Refresh();
}

void frmFX_Config::Show_Effect(std::int32_t newId, Effect_Kind kind) {
    End_Gesture();
    channelId = newId;
    tabs->setCurrentIndex(static_cast<int>(kind));
    Refresh();
    show();
    raise();
    activateWindow();
}

void frmFX_Config::Refresh() {
    const int row = Row();
    if (row < 0) {
        close();
        return;
    }
    const auto channelRow = static_cast<std::size_t>(session.channels->ChannelI(channelId));
    const GlobalChannel& channel = session.channels->Channels[channelRow];
    const QString name = QString::fromStdString(channel.ChannelName);
    setWindowTitle(tr("Channel effects [%1]").arg(name));
    about->setText(Is_On(channel.IsAudio) ? name : tr("%1 · slot %2").arg(name).arg(channel.OutputChannel));
    hint->setVisible(!session.output->UsingSynth());
    const Effect_Settings& settings = session.channels->Effects.Row(row);
    for (const Effect_Kind kind : ALL_EFFECTS) {
        Page& page = pages[static_cast<std::size_t>(kind)];
        page.on->setChecked(settings.Is_On(kind));
        tabs->setTabText(static_cast<int>(kind),
                         settings.Is_On(kind) ? tr("%1 •").arg(Effect_Caption(kind)) : Effect_Caption(kind));
        const auto parameters = Parameters_Of(kind);
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            const float value = gesture.Values(channelId, kind)[i];
            const QSignalBlocker quiet(page.sliders[i]);
            page.sliders[i]->setValue(Step_Of(parameters[i], value));
            page.figures[i]->setText(Figure(parameters[i], value));
        }
        Show_Picture(kind);
    }
}

} // namespace tonvex
