#include "widgets/theme.h"

#include <QTest>

using namespace tonvex;

class Theme_Test : public QObject {
    Q_OBJECT
private slots:
    // Worked out by hand: black and white have luminances 0 and 1, so 1.05 / 0.05 = 21; sRGB 0x777777 is
    // ((0.4667 + 0.055) / 1.055)^2.4 = 0.1845, so white on it has 1.05 / 0.2345 = 4.478.
    void Contrast_Of_Known_Colours() {
        QCOMPARE(Contrast_Ratio(Qt::white, Qt::black), 21.0);
        QCOMPARE(Contrast_Ratio(Qt::black, Qt::white), 21.0);
        QCOMPARE(Contrast_Ratio(Qt::red, Qt::red), 1.0);
        QVERIFY(qAbs(Contrast_Ratio(QColor(0x777777), Qt::white) - 4.478) < 0.002);
    }

    void Every_Pair_Holds_Its_Contrast_data() {
        QTest::addColumn<QColor>("front");
        QTest::addColumn<QColor>("back");
        QTest::addColumn<double>("least");
        for (const Theme_Tokens* tokens : {&Theme_Tokens::Dark(), &Theme_Tokens::Light()})
            for (const Colour_Pair& pair : Pairs_In_Use(*tokens))
                QTest::addRow("%s, %s", tokens->dark ? "dark" : "light", pair.use)
                    << pair.front << pair.back << pair.least;
    }

    void Every_Pair_Holds_Its_Contrast() {
        QFETCH(QColor, front);
        QFETCH(QColor, back);
        QFETCH(double, least);
        const double ratio = Contrast_Ratio(front, back);
        QVERIFY2(ratio >= least, qPrintable(QStringLiteral("%1, wanted %2").arg(ratio).arg(least)));
    }

    void The_Choice_Is_Kept() {
        Memory_Settings_Store store;
        {
            Theme theme(*qApp, store);
            theme.Set_Appearance(Appearance::Light);
            QVERIFY(!theme.Tokens().dark);
            QCOMPARE(qApp->palette().color(QPalette::Text), Theme_Tokens::Light().text);
            theme.Set_Appearance(Appearance::Dark);
            QVERIFY(theme.Tokens().dark);
        }
        Theme again(*qApp, store);
        QCOMPARE(again.Current(), Appearance::Dark);
        QCOMPARE(qApp->palette().color(QPalette::Window), Theme_Tokens::Dark().panel);
        again.Set_Appearance(Appearance::FollowDesktop);
        QVERIFY(!again.Tokens().dark); // the offscreen desktop is light
    }

    void Icons_Take_The_Colour_Asked_For() {
        Memory_Settings_Store store;
        const Theme theme(*qApp, store);
        const QImage stop = theme.Picture(QStringLiteral("stop"), QColor(0xef5350), 24, 2.0).toImage();
        QCOMPARE(stop.width(), 48);
        QCOMPARE(stop.pixelColor(24, 24), QColor(0xef5350));
        QCOMPARE(stop.pixelColor(2, 2).alpha(), 0);
        QVERIFY(theme.Picture(QStringLiteral("no such picture"), Qt::black, 24, 1.0).isNull());
    }

    void Lengths_Follow_The_Text() {
        Memory_Settings_Store store;
        Theme theme(*qApp, store);
        const int before = theme.Px(44);
        theme.Set_Text_Scale(3.0);
        QVERIFY(qAbs(theme.Px(44) - 3 * before) <= 1);
        QCOMPARE(theme.Font(Text_Size::Body).pixelSize(), theme.Px(13));
        QCOMPARE(theme.Px(0), 0);
        QVERIFY(theme.Px(0.1) >= 1); // a border never vanishes
    }
};

QTEST_MAIN(Theme_Test)
#include "theme_test.moc"
