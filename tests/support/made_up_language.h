#pragma once

#include <QRegularExpression>
#include <QSet>
#include <QString>
#include <QTranslator>

#include <utility>

namespace tonvex {

/// A language that nobody speaks: each letter of English is replaced by one that English does not have, each
/// text is a third longer and marked at both ends. What is shown in plain letters was never translated; what
/// has lost its right mark was cut off.
class Made_Up_Language final : public QTranslator {
public:
    using Asked = std::pair<QString, QString>; ///< context, source
    mutable QSet<Asked> asked;

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* sourceText, const char*, int) const override {
        asked.insert({QString::fromUtf8(context), QString::fromUtf8(sourceText)});
        return Say(QString::fromUtf8(sourceText));
    }

    static QString Say(const QString& source) {
        static const QString LETTERS = QStringLiteral("àƀçđéƒĝĥîĵķļɱñöþʠŕšţüṽŵẋýž");
        // A place for a value, a tag or an entity of HTML, an escape of a date: these stay.
        static const QRegularExpression KEPT(QStringLiteral("%L?[0-9n]|<[^>]*>|&[a-z]+;|\\*\\.[a-z0-9*]+"));
        if (!QString(source)
                 .remove(QLatin1Char('&'))
                 .contains(QRegularExpression(QStringLiteral("[A-Za-z]{2}"))))
            return source; // a sign or a letter, such as the M of a button: nothing to translate
        QString text;
        qsizetype letters = 0;
        for (qsizetype i = 0; i < source.size(); ++i) {
            const auto kept = KEPT.match(source, i, QRegularExpression::NormalMatch,
                                         QRegularExpression::AnchorAtOffsetMatchOption);
            if (kept.hasMatch()) {
                text += kept.captured();
                i += kept.capturedLength() - 1;
                continue;
            }
            const QChar lower = source[i].toLower();
            if (lower >= QLatin1Char('a') && lower <= QLatin1Char('z')) {
                const QChar strange = LETTERS[lower.unicode() - u'a'];
                text += source[i].isUpper() ? strange.toUpper() : strange;
                ++letters;
            } else {
                text += source[i];
            }
        }
        return QLatin1Char('[') + text + QString((letters + 2) / 3, QChar(u'ö')) + QLatin1Char(']');
    }
};

} // namespace tonvex
