#include "editors/windows/frm_ev_ed_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tonvex {

namespace {

constexpr int NOTATIONS = 4;
/// Notes that differ between the spellings: C, C sharp, D, A sharp, B.
constexpr int SAMPLE[] = {0, 1, 2, 10, 11};

} // namespace

frmEvEd_View::frmEvEd_View(const Theme& look, const Roll_Options& options, const NotesStuff& notes,
                           QWidget* parent)
    : Plain_Dialog(look, tr("View"), tr("What the events editor shows"), parent),
      notation(new QComboBox(this)) {
    setObjectName(QStringLiteral("frmEvEd_View"));
    const std::pair<QString, bool Roll_Options::*> rows[] = {
        {tr("View &Bars"), &Roll_Options::Bars},
        {tr("View b&eats (grid)"), &Roll_Options::Beats},
        {tr("View M&usic Creator bar notes"), &Roll_Options::CreatorBars},
        {tr("View &Midi notes number on note events."), &Roll_Options::NoteNumbers},
        {tr("Note &reference lines always visible"), &Roll_Options::ReferenceLines},
        {tr("View &volumes under the notes"), &Roll_Options::VolumeLane},
        {tr("&Auto scroll events editor"), &Roll_Options::AutoScroll}};
    for (const auto& [text, option] : rows) {
        auto* check = new QCheckBox(text, this);
        check->setChecked(options.*option);
        column->addWidget(check);
        checks.emplace_back(check, option);
    }
    QWidget::setTabOrder(checks.back().first, notation);
    checks.front().first->setFocus();
    auto* row = new QHBoxLayout;
    row->setSpacing(theme.Px(8));
    auto* label = new QLabel(tr("Note &names:"), this);
    label->setBuddy(notation);
    notation->setObjectName(QStringLiteral("notation"));
    notation->setAccessibleName(tr("Note names"));
    for (std::size_t spelling = 0; spelling < NOTATIONS; ++spelling) {
        QStringList names;
        for (const int root : SAMPLE)
            names << QString::fromStdString(notes.NoteNames[static_cast<std::size_t>(root)][spelling]);
        notation->addItem(names.join(QLatin1Char(' ')));
    }
    notation->setCurrentIndex(notes.Global_Notation);
    row->addWidget(label);
    row->addWidget(notation, 1);
    auto* fonts = new QPushButton(tr("Sound&Font list..."), this);
    fonts->setAutoDefault(false);
    connect(fonts, &QPushButton::clicked, this, [this] {
        accept();
        emit soundFontsWanted();
    });
    row->addWidget(fonts);
    column->addLayout(row);
    Add_Buttons();
}

Roll_Options frmEvEd_View::Options() const {
    Roll_Options options;
    for (const auto& [check, option] : checks)
        options.*option = check->isChecked();
    return options;
}

int frmEvEd_View::Notation() const {
    return notation->currentIndex();
}

} // namespace tonvex
