#include "project/windows/frm_properties.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tonvex {

namespace {

/// What a line of a file's header is meant for; longer ones that came with a file stay.
constexpr int LONGEST_LINE = 250;
/// In UTF-8 even the longest letters keep within the 65535 bytes that the file has for a text.
constexpr int LONGEST_COMMENTS = 16000;

/// The file's lines end in "\r\n".
std::string File_Text(QString text) {
    return text.replace(QLatin1String("\r\n"), QLatin1String("\n"))
        .replace(QLatin1Char('\n'), QLatin1String("\r\n"))
        .toStdString();
}

} // namespace

frmProperties::frmProperties(Session& owner, const Theme& theme, QWidget* parent)
    : QDialog(parent), session(owner), Text1(new QLineEdit(this)), Text2(new QLineEdit(this)),
      Text3(new QPlainTextEdit(this)) {
    setWindowTitle(tr("Properties"));
    setObjectName(QStringLiteral("frmProperties"));
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme.Px(20), theme.Px(20), theme.Px(20), theme.Px(20));
    all->setSpacing(theme.Px(12));
    const Project_State& song = session.project;
    const auto line = [](QLineEdit* field, const char* name, const QString& told, const std::string& text) {
        field->setObjectName(QLatin1String(name));
        field->setAccessibleName(told);
        field->setToolTip(told);
        const QString shown = QString::fromStdString(text);
        field->setMaxLength(std::max(LONGEST_LINE, static_cast<int>(shown.size())));
        field->setText(shown);
    };
    line(Text1, "Text1", tr("Title of the song"), song.ProjectTitle);
    line(Text2, "Text2", tr("Author of the song"), song.ProjectAuthor);
    Text3->setObjectName(QStringLiteral("Text3"));
    Text3->setAccessibleName(tr("Comments on the song"));
    Text3->setToolTip(tr("Comments on the song"));
    Text3->setTabChangesFocus(true);
    Text3->setMinimumSize(theme.Px(360), theme.Px(140));
    Text3->setPlainText(QString::fromStdString(song.ProjectComments));
    auto* fields = new QFormLayout;
    fields->addRow(tr("&Title:"), Text1);
    fields->addRow(tr("&Author:"), Text2);
    fields->addRow(tr("Co&mments:"), Text3);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(QDialogButtonBox::Cancel)->setAutoDefault(false);
    buttons->addButton(QDialogButtonBox::Ok)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmProperties::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    all->addLayout(fields);
    all->addWidget(buttons);
    Text1->selectAll();
}

void frmProperties::accept() {
    Project_State& song = session.project;
    const QString comments = Text3->toPlainText();
    if (comments.size() > LONGEST_COMMENTS) {
        session.doors.dialogs.Show_Message(
            Box_Kind::Information,
            tr("The comments are too long: a song keeps %1 characters.").arg(LONGEST_COMMENTS).toStdString());
        Text3->setFocus();
        return;
    }
    const std::string title = Text1->text().trimmed().toStdString();
    const std::string author = Text2->text().trimmed().toStdString();
    // What only differs in how lines end is as it was.
    const bool commented =
        comments != QPlainTextEdit(QString::fromStdString(song.ProjectComments)).toPlainText();
    if (title != song.ProjectTitle || author != song.ProjectAuthor || commented) {
        song.ProjectTitle = title;
        song.ProjectAuthor = author;
        if (commented)
            song.ProjectComments = File_Text(comments);
        song.Modified = true;
        emit changed();
    }
    QDialog::accept();
}

} // namespace tonvex
