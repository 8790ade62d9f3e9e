#include "widgets/theme.h"

#include <QDialog>
#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QLayout>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QProxyStyle>
#include <QScrollBar>
#include <QStyle>
#include <QSvgRenderer>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

// A static library drops a resource file that nobody asks for. The macro must stand outside namespaces.
static void Load_Icons() {
    Q_INIT_RESOURCE(icons);
}

namespace tonvex {

namespace {

constexpr double BODY_PIXELS = 13.0;
constexpr const char* SECTION = "Window";
constexpr const char* KEY = "Appearance";
constexpr const char* SIZE_KEY = "Size";
constexpr double LEAST_SCALE = 1.0;
constexpr double MOST_SCALE = 3.0;

Appearance From_Text(const std::string& text) {
    if (text == "light")
        return Appearance::Light;
    return text == "dark" ? Appearance::Dark : Appearance::FollowDesktop;
}

const char* To_Text(Appearance appearance) {
    switch (appearance) {
    case Appearance::Light:
        return "light";
    case Appearance::Dark:
        return "dark";
    case Appearance::FollowDesktop:
        break;
    }
    return "desktop";
}

QPalette Make_Palette(const Theme_Tokens& t) {
    QPalette palette;
    palette.setColor(QPalette::Window, t.panel);
    palette.setColor(QPalette::WindowText, t.text);
    palette.setColor(QPalette::Base, t.panel);
    palette.setColor(QPalette::AlternateBase, t.window);
    palette.setColor(QPalette::Text, t.text);
    palette.setColor(QPalette::PlaceholderText, t.dim);
    palette.setColor(QPalette::Button, t.control);
    palette.setColor(QPalette::ButtonText, t.text);
    palette.setColor(QPalette::BrightText, t.text);
    palette.setColor(QPalette::Highlight, t.accent);
    palette.setColor(QPalette::HighlightedText, t.onAccent);
    palette.setColor(QPalette::ToolTipBase, t.control);
    palette.setColor(QPalette::ToolTipText, t.text);
    palette.setColor(QPalette::Link, t.accent);
    palette.setColor(QPalette::LinkVisited, t.accent);
    palette.setColor(QPalette::Light, t.hover);
    palette.setColor(QPalette::Midlight, t.hover);
    palette.setColor(QPalette::Mid, t.line);
    palette.setColor(QPalette::Dark, t.line);
    palette.setColor(QPalette::Shadow, t.window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, t.dim);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, t.hover);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, t.dim);
    return palette;
}

// Standard controls. {name} is a colour token, [n] a length at 100 %.
constexpr const char* SHEET = R"(
QMainWindow, QMainWindow::separator { background: {window}; }
QMainWindow::separator { width: [4]px; height: [4]px; }
QMainWindow::separator:hover { background: {accent}; }
QDockWidget { border: 0; }
QMenuBar { background: {window}; color: {text}; padding: [2]px [4]px; border-bottom: 1px solid {line}; }
QMenuBar::item { background: transparent; padding: [4]px [8]px; border-radius: [5]px; }
QMenuBar::item:selected, QMenuBar::item:pressed { background: {hover}; }
QMenu { background: {panel}; color: {text}; border: 1px solid {line}; padding: [4]px; }
QMenu::item { padding: [6]px [24]px [6]px [28]px; border-radius: [5]px; }
QMenu::item:selected { background: {hover}; }
QMenu::item:disabled { color: {dim}; }
QMenu::separator { height: 1px; background: {line}; margin: [4]px [8]px; }
QMenu::indicator { width: [14]px; height: [14]px; left: [8]px; }
QMenu::indicator:non-exclusive:checked, QMenu::indicator:exclusive:checked { image: url({check}); }
QDialogButtonBox { button-layout: 3; }
QToolTip { background: {control}; color: {text}; border: 1px solid {line}; padding: [4]px [6]px; }
QPushButton { background: {control}; color: {text}; border: 1px solid {line}; border-radius: [8]px;
  padding: [4]px [16]px; min-height: [20]px; }
QPushButton:hover { background: {hover}; }
QPushButton:checked { background: {accent}; color: {onAccent}; border-color: {accent}; }
QPushButton:default { background: {accent}; color: {onAccent}; border-color: {accent}; }
QPushButton:disabled { color: {dim}; background: {panel}; }
QPushButton:focus { border: 2px solid {accent}; padding: [3]px [15]px; }
QPushButton:checked:focus, QPushButton:default:focus { border: 2px solid {text}; }
QLineEdit, QSpinBox, QDoubleSpinBox, QComboBox, QPlainTextEdit, QTextEdit { background: {control};
  color: {text}; border: 1px solid {line}; border-radius: [5]px; padding: [3]px [6]px; min-height: [20]px;
  selection-background-color: {accent}; selection-color: {onAccent}; }
QLineEdit:focus, QSpinBox:focus, QDoubleSpinBox:focus, QComboBox:focus, QPlainTextEdit:focus {
  border: 2px solid {accent}; padding: [2]px [5]px; }
QLineEdit:disabled, QSpinBox:disabled, QDoubleSpinBox:disabled, QComboBox:disabled { background: {panel};
  color: {dim}; }
QComboBox:focus { padding: [3]px [5]px; }
QComboBox::drop-down { border: 0; width: [24]px; }
QComboBox::down-arrow { image: url({chevron}); width: [16]px; height: [16]px; }
QComboBox QAbstractItemView { background: {panel}; color: {text}; border: 1px solid {line}; }
QAbstractItemView { background: {panel}; color: {text}; border: 1px solid {line}; border-radius: [5]px;
  outline: 0; selection-background-color: {accent}; selection-color: {onAccent}; }
QAbstractItemView:focus { border: 2px solid {accent}; }
QAbstractItemView::item { padding: [4]px [6]px; border: 0; background: transparent; }
QAbstractItemView::item:hover { background: {hover}; color: {text}; }
QAbstractItemView::item:selected { background: {accent}; color: {onAccent}; }
QAbstractItemView:disabled, QAbstractItemView::item:disabled { color: {dim}; }
QAbstractItemView::item:selected:disabled { background: {hover}; color: {text}; }
QHeaderView::section { background: {control}; color: {dim}; border: 0; border-right: 1px solid {line};
  padding: [4]px [6]px; }
QScrollBar:vertical { background: transparent; width: [10]px; margin: 0; }
QScrollBar:horizontal { background: transparent; height: [10]px; margin: 0; }
QScrollBar::handle { background: {hover}; border-radius: [4]px; margin: [1]px; }
QScrollBar::handle:vertical { min-height: [24]px; }
QScrollBar::handle:horizontal { min-width: [24]px; }
QScrollBar::handle:hover { background: {dim}; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QTabWidget::pane { border: 0; border-top: 1px solid {line}; background: {panel}; }
QTabBar { background: {window}; }
QTabBar::tab { background: transparent; color: {dim}; padding: [8]px [16]px; border: 0;
  border-top: 2px solid transparent; border-top-left-radius: [8]px; border-top-right-radius: [8]px; }
QTabBar::tab:selected { background: {panel}; color: {text}; border-top: 2px solid {accent}; }
QTabBar::tab:hover:!selected { color: {text}; }
QTabBar::tab:focus { color: {text}; border: 2px solid {accent}; padding: [8]px [14]px [6]px; }
QToolBar { background: {panel}; border: 0; border-bottom: 1px solid {line}; padding: 0; spacing: 0; }
QLabel[dim="true"] { color: {dim}; }
QStatusBar { background: {window}; color: {dim}; }
QScrollArea { border: 0; border-radius: 0; }
QScrollArea:focus { border: 0; }
QCheckBox:focus, QRadioButton:focus { border: 2px solid {accent}; border-radius: [5]px; outline: 0; }
QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
QRadioButton { spacing: [8]px; padding: [2]px; border: 2px solid transparent; }
QRadioButton::indicator { width: [14]px; height: [14]px; border: [1]px solid {dim}; border-radius: [8]px;
  background: {control}; }
QRadioButton::indicator:hover { background: {hover}; }
QRadioButton::indicator:checked { width: [6]px; height: [6]px; border: [5]px solid {accent};
  background: {onAccent}; }
QRadioButton::indicator:disabled { border-color: {line}; background: {panel}; }
QCheckBox { spacing: [8]px; padding: [2]px; border: 2px solid transparent; }
QCheckBox::indicator { width: [16]px; height: [16]px; border: 1px solid {dim}; border-radius: [4]px;
  background: {control}; }
QCheckBox::indicator:checked { image: url({check}); }
QCheckBox::indicator:hover { background: {hover}; }
QCheckBox::indicator:disabled { border-color: {line}; background: {panel}; }
QSlider:horizontal { min-height: [24]px; }
QSlider::groove:horizontal { height: [4]px; background: {hover}; border-radius: [2]px; }
QSlider::sub-page:horizontal { background: {accent}; border-radius: [2]px; }
QSlider::handle:horizontal { width: [16]px; height: [16]px; margin: -[6]px 0; border-radius: [8]px;
  background: {text}; }
QSlider::handle:horizontal:hover { background: {accent}; }
QSlider::handle:horizontal:focus { width: [10]px; height: [10]px; border: [3]px solid {accent};
  background: {panel}; }
QSlider::sub-page:horizontal:disabled, QSlider::handle:horizontal:disabled { background: {dim}; }
)";

/// Fusion, which also names the controls that Qt puts into others without a name.
class Naming_Style final : public QProxyStyle {
public:
    Naming_Style() : QProxyStyle(QStringLiteral("Fusion")) {}
    void polish(QWidget* widget) override {
        QProxyStyle::polish(widget);
        auto* bar = qobject_cast<QScrollBar*>(widget);
        if (bar != nullptr && bar->accessibleName().isEmpty())
            bar->setAccessibleName(bar->orientation() == Qt::Horizontal ? Theme::tr("Horizontal scroll bar")
                                                                        : Theme::tr("Vertical scroll bar"));
    }
    using QProxyStyle::polish;
};

} // namespace

Theme::Theme(QApplication& application, Settings_Store& settingsStore)
    : app(application), store(settingsStore), tokens(&Theme_Tokens::Dark()),
      appearance(From_Text(store.Get(SECTION, KEY, "desktop"))), desktopFont(QApplication::font()) {
    Load_Icons();
    QApplication::setStyle(new Naming_Style); // the application owns it
    family =
        QFontDatabase::hasFamily(QStringLiteral("Inter")) ? QStringLiteral("Inter") : desktopFont.family();
    digitFamily = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    textScale =
        std::clamp(std::atoi(store.Get(SECTION, SIZE_KEY, "100").c_str()) / 100.0, LEAST_SCALE, MOST_SCALE);
    app.installEventFilter(this);
    Apply();
}

void Theme::Set_Appearance(Appearance wanted) {
    appearance = wanted;
    store.Set(SECTION, KEY, To_Text(wanted));
    Apply();
}

void Theme::Set_Text_Scale(double factor) {
    textScale = std::clamp(factor, LEAST_SCALE, MOST_SCALE);
    Apply();
}

void Theme::Keep_Text_Percent(int percent) {
    store.Set(SECTION, SIZE_KEY, std::to_string(percent));
    Set_Text_Scale(percent / 100.0);
}

void Theme::Refresh() {
    Apply();
}

int Theme::Px(double designPixels) const {
    if (designPixels <= 0.0)
        return 0;
    return std::max(1, static_cast<int>(std::floor(designPixels * scale + 0.5)));
}

QFont Theme::Font(Text_Size size, QFont::Weight weight) const {
    QFont font(family);
    font.setPixelSize(Px(static_cast<double>(size)));
    font.setWeight(weight);
    return font;
}

QFont Theme::Digits(Text_Size size, QFont::Weight weight) const {
    QFont font(digitFamily);
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(Px(static_cast<double>(size)));
    font.setWeight(weight);
    return font;
}

QPixmap Theme::Picture(const QString& name, const QColor& colour, int edge, double devicePixelRatio) const {
    const int pixels = std::max(1, static_cast<int>(std::ceil(edge * devicePixelRatio)));
    const QString key = QStringLiteral("tonvex-%1-%2-%3").arg(name, colour.name(QColor::HexArgb)).arg(pixels);
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
        if (!file.open(QIODevice::ReadOnly))
            return picture;
        // The pictures are drawn in black alone, which the token replaces.
        QByteArray svg = file.readAll();
        svg.replace("#000", colour.name().toLatin1());
        QSvgRenderer renderer(svg);
        picture = QPixmap(pixels, pixels);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setOpacity(colour.alphaF());
        renderer.render(&painter);
        painter.end();
        QPixmapCache::insert(key, picture);
    }
    picture.setDevicePixelRatio(pixels / static_cast<double>(edge));
    return picture;
}

QIcon Theme::Icon(const QString& name) const {
    QIcon icon;
    for (const double ratio : {1.0, 2.0, 3.0}) {
        icon.addPixmap(Picture(name, tokens->text, Px(18), ratio));
        icon.addPixmap(Picture(name, tokens->dim, Px(18), ratio), QIcon::Disabled);
    }
    return icon;
}

bool Theme::eventFilter(QObject* watched, QEvent* event) {
    if (!applying && event->type() == QEvent::ThemeChange && watched->isWindowType()) {
        // Every window hears it; one refresh behind all of them is enough.
        applying = true;
        QTimer::singleShot(0, this, [this] { Apply(); });
    }
    // A dialog begins no lower than its wrapped texts need, which Qt leaves out on small screens.
    if (event->type() == QEvent::Show)
        if (auto* dialog = qobject_cast<QDialog*>(watched);
            dialog != nullptr && dialog->layout() != nullptr && dialog->layout()->hasHeightForWidth()) {
            const int least = dialog->layout()->totalMinimumHeightForWidth(dialog->width());
            if (dialog->height() < least)
                dialog->resize(dialog->width(), least);
        }
    return QObject::eventFilter(watched, event);
}

bool Theme::Desktop_Is_Dark() const {
    return desktopPalette.color(QPalette::Window).lightness() < 128;
}

void Theme::Apply() {
    applying = true;
    // An empty palette lays the desktop's own bare again.
    QApplication::setPalette(QPalette());
    desktopPalette = QApplication::palette();
    const bool dark =
        appearance == Appearance::Dark || (appearance == Appearance::FollowDesktop && Desktop_Is_Dark());
    tokens = dark ? &Theme_Tokens::Dark() : &Theme_Tokens::Light();
    const double desktopPixels =
        std::max(BODY_PIXELS, static_cast<double>(QFontInfo(desktopFont).pixelSize()));
    scale = desktopPixels * textScale / BODY_PIXELS;
    QApplication::setFont(Font(Text_Size::Body));
    QApplication::setPalette(Make_Palette(*tokens));
    app.setStyleSheet(Sheet());
    applying = false;
    emit Changed();
}

QString Theme::Sheet() const {
    const Theme_Tokens& t = *tokens;
    QString sheet = QString::fromLatin1(SHEET);
    const std::pair<const char*, const QColor*> colours[] = {
        {"{window}", &t.window}, {"{panel}", &t.panel},   {"{control}", &t.control},
        {"{hover}", &t.hover},   {"{line}", &t.line},     {"{text}", &t.text},
        {"{dim}", &t.dim},       {"{accent}", &t.accent}, {"{onAccent}", &t.onAccent}};
    for (const auto& [name, colour] : colours)
        sheet.replace(QLatin1String(name), colour->name());
    sheet.replace(QLatin1String("{check}"), t.dark ? QLatin1String(":/icons/check-light.svg")
                                                   : QLatin1String(":/icons/check-dark.svg"));
    sheet.replace(QLatin1String("{chevron}"), t.dark ? QLatin1String(":/icons/chevron-light.svg")
                                                     : QLatin1String(":/icons/chevron-dark.svg"));
    for (int length = 1; length <= 32; ++length)
        sheet.replace(QStringLiteral("[%1]").arg(length), QString::number(Px(length)));
    return sheet;
}

} // namespace tonvex
