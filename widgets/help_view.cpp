#include "widgets/help_view.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QScrollBar>

#include <utility>

namespace tonvex {

namespace {

constexpr const char* ENDING = ".html";

// {name} is a colour token, [n] a length at 100 %.
constexpr const char* SHEET = R"(
body { color: {text}; }
h1 { font-size: [24]px; font-weight: 600; margin-top: [4]px; margin-bottom: [12]px; }
h2 { font-size: [17]px; font-weight: 600; margin-top: [20]px; margin-bottom: [6]px; }
p, li { margin-top: [4]px; margin-bottom: [6]px; line-height: 140%; }
a { color: {accent}; text-decoration: none; }
a.do { color: {accent}; font-weight: 600; text-decoration: underline; }
kbd, code { font-family: monospace; background-color: {control}; color: {text}; }
th { text-align: left; color: {dim}; font-weight: 600; padding: [4]px [12]px [4]px 0px; }
td { padding: [4]px [12]px [4]px 0px; }
.lead { font-size: [15]px; color: {dim}; }
.note { color: {dim}; }
)";

} // namespace

Help_View::Help_View(const Theme& look, std::filesystem::path helpFolder, QWidget* parent)
    : QTextBrowser(parent), theme(look), folder(std::move(helpFolder)) {
    setObjectName(QStringLiteral("helpView"));
    setAccessibleName(tr("Help page"));
    setOpenLinks(false);
    setFrameShape(QFrame::NoFrame);
    connect(this, &QTextBrowser::anchorClicked, this, &Help_View::Follow);
    connect(&theme, &Theme::Changed, this, &Help_View::Use_Look);
    Use_Look();
}

QString Help_View::Path_Of(const QString& page) const {
    // A page is a plain name: nothing that climbs out of the folder.
    if (page.isEmpty() || page.contains(QLatin1Char('/')) || page.startsWith(QLatin1Char('.')))
        return {};
    const QString path = QString::fromStdString((folder / page.toStdString()).string() + ENDING);
    return QFileInfo(path).isFile() ? path : QString();
}

bool Help_View::Show_Page(const QString& page) {
    const QString path = Path_Of(page);
    if (path.isEmpty()) {
        setHtml(QStringLiteral("<h1>%1</h1><p>%2</p>")
                    .arg(tr("This page is missing").toHtmlEscaped(),
                         tr("The installation has no help page \"%1\".").arg(page).toHtmlEscaped()));
        return false;
    }
    setSource(QUrl::fromLocalFile(path));
    return true;
}

QString Help_View::Page() const {
    return source().isEmpty() ? QString() : QFileInfo(source().toLocalFile()).completeBaseName();
}

void Help_View::Follow(const QUrl& link) {
    const QString scheme = link.scheme();
    if (scheme == QLatin1String("tonvex")) {
        emit actionAsked(link.path());
    } else if (scheme == QLatin1String("https") || scheme == QLatin1String("http")) {
        QDesktopServices::openUrl(link);
    } else if (scheme.isEmpty() || link.isLocalFile()) {
        const QString name = QUrl::fromPercentEncoding(link.path().toUtf8()).section(QLatin1Char('/'), -1);
        if (name.isEmpty() && link.hasFragment())
            scrollToAnchor(link.fragment());
        else
            (void)Show_Page(name.endsWith(QLatin1String(ENDING)) ? name.chopped(5) : name);
    }
}

QVariant Help_View::loadResource(int type, const QUrl& name) {
    if (name.scheme() == QLatin1String("icon"))
        return theme.Picture(name.path(), theme.Tokens().text, theme.Px(18), devicePixelRatioF());
    const QUrl whole = source().resolved(name);
    if (!whole.isLocalFile())
        return {};
    const QString home = QFileInfo(QString::fromStdString(folder.string())).canonicalFilePath();
    const QString wanted = QFileInfo(whole.toLocalFile()).canonicalFilePath();
    if (home.isEmpty() || !wanted.startsWith(home + QLatin1Char('/')))
        return {};
    return QTextBrowser::loadResource(type, whole);
}

bool Help_View::event(QEvent* event) {
    // The margin is the frame's, inside the scroll bar.
    if (event->type() == QEvent::Polish)
        document()->setDocumentMargin(theme.Px(24));
    return QTextBrowser::event(event);
}

void Help_View::Use_Look() {
    QString sheet = QString::fromLatin1(SHEET);
    const Theme_Tokens& t = theme.Tokens();
    const std::pair<const char*, const QColor*> colours[] = {
        {"{text}", &t.text}, {"{dim}", &t.dim}, {"{accent}", &t.accent}, {"{control}", &t.control}};
    for (const auto& [name, colour] : colours)
        sheet.replace(QLatin1String(name), colour->name());
    for (int length = 1; length <= 32; ++length)
        sheet.replace(QStringLiteral("[%1]").arg(length), QString::number(theme.Px(length)));
    setStyleSheet(QStringLiteral("QTextBrowser { background: %1; border: 0; }").arg(t.panel.name()));
    document()->setDefaultStyleSheet(sheet);
    document()->setDocumentMargin(theme.Px(24));
    if (!source().isEmpty()) {
        const int place = verticalScrollBar()->value();
        reload();
        verticalScrollBar()->setValue(place);
    }
}

} // namespace tonvex
