#include "Platform/Foundation/KeyedArchiveList.h"
#include "Platform/Foundation/KeyedArchiver.h"
#include "Platform/Foundation/KeyedUnarchiver.h"
#include "support/Log.h"

#include <QBuffer>
#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QDateTime>
#include <QPoint>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace Platform;

namespace
{

// A record with three fields, read and written in their order.
class Box : public Codable
{
public:
    QString className() const override { return u"Box"_s; }

    void encodeWithCoder(KeyedArchiver &coder) const override
    {
        coder.encodeObject(first, "first"_L1);
        coder.encodeObject(second, "second"_L1);
        coder.encodeObject(third, "third"_L1);
    }

    void initWithCoder(KeyedUnarchiver &coder) override
    {
        first = coder.decodeObjectForKey("first"_L1);
        second = coder.decodeObjectForKey("second"_L1);
        third = coder.decodeObjectForKey("third"_L1);
    }

    QVariant first;
    QVariant second;
    QVariant third;
};

QVariant entry(const CodablePointer &record)
{
    return QVariant::fromValue(record);
}

std::shared_ptr<Box> makeBox(const QVariant &first, const QVariant &second = {}, const QVariant &third = {})
{
    auto box = std::make_shared<Box>();
    box->first = first;
    box->second = second;
    box->third = third;
    return box;
}

QVariant unarchived(QByteArrayView data)
{
    return KeyedUnarchiver::unarchive(data, {{u"Box"_s, [] { return std::make_shared<Box>(); }}});
}

std::shared_ptr<Box> boxOf(const QVariant &value)
{
    return std::dynamic_pointer_cast<Box>(value.value<CodablePointer>());
}

std::shared_ptr<Box> unarchivedBox(QByteArrayView data)
{
    return boxOf(unarchived(data));
}

// Whether only the first field of the list's first box has been read, and the box behind it whole.
bool isStoppedAtSecond(const QVariant &list)
{
    const auto broken = boxOf(list.toList().value(0));
    const auto next = boxOf(list.toList().value(1));
    return list.toList().size() == 2 && broken->first == u"a"_s && !broken->second.isValid() && !broken->third.isValid()
        && next->third == u"next"_s;
}

QVariant nestedList(int depth)
{
    QVariant value = u"core"_s;
    for (int level = 0; level < depth; ++level)
        value = QVariantList{value};
    return value;
}

QCborMap cborBox(const QCborMap &fields)
{
    QCborMap box{{0, u"Box"_s}};
    for (auto field = fields.begin(); field != fields.end(); ++field)
        box.insert(field.key(), field.value());
    return box;
}

} // namespace

class TestKeyedArchiver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("null") << QVariant();
        QTest::newRow("bool") << QVariant(true);
        QTest::newRow("smallest integer") << QVariant(std::numeric_limits<qint64>::min());
        QTest::newRow("largest integer") << QVariant(std::numeric_limits<qint64>::max());
        QTest::newRow("unsigned") << QVariant(std::numeric_limits<quint64>::max());
        QTest::newRow("integral double") << QVariant(40.0);
        QTest::newRow("double") << QVariant(-1.0e-300);
        QTest::newRow("text") << QVariant(u"gr\u00fc\u00df \U0001F600 \0 end"_s);
        QTest::newRow("empty text") << QVariant(u""_s);
        QTest::newRow("long text") << QVariant(QString(100000, u'\u20ac'));
        QTest::newRow("date") << QVariant(QDateTime(QDate(2026, 2, 28), QTime(23, 59, 59, 987), Qt::UTC));
        QTest::newRow("list") << QVariant(QVariantList{1LL, u"a"_s, QVariant::fromValue(nullptr), QVariantList(), 2.5});
        QTest::newRow("map that looks like a record")
            << QVariant(QVariantMap{{u"0"_s, u"Box"_s}, {u"$class"_s, u"Box"_s}, {u"class"_s, u"Box"_s}});
        QTest::newRow("map") << QVariant(QVariantMap{{u""_s, 1LL}, {u"k"_s, QVariantMap{{u"n"_s, false}}}});
    }

    // As root and as field: the same value of the same kind.
    void values()
    {
        QFETCH(QVariant, value);
        const QVariant root = unarchived(KeyedArchiver::archivedData(value));
        QCOMPARE(root.metaType(), value.metaType());
        QCOMPARE(root, value);

        const auto box = unarchivedBox(KeyedArchiver::archivedData(entry(makeBox(1, value, 3))));
        QCOMPARE(box->second.metaType(), value.metaType());
        QCOMPARE(box->second, value);
        QCOMPARE(box->third.toInt(), 3);
    }

    void recordsNestAndKeepTheirIdentity()
    {
        const auto inner = makeBox(u"inner"_s);
        const auto outer = makeBox(QVariantList{entry(inner), u"text"_s, entry(nullptr)}, entry(inner), QString());
        const auto box = unarchivedBox(KeyedArchiver::archivedData(entry(outer)));
        const QVariantList list = box->first.toList();
        QCOMPARE(list.size(), 3);
        QCOMPARE(boxOf(list[0])->first, u"inner"_s);
        QCOMPARE(list[1], u"text"_s);
        QVERIFY(list[2].isNull());
        QVERIFY(box->second.value<CodablePointer>());
        QVERIFY(!box->third.isValid());
    }

    void anArchiveIsCborWithTheClassNameUnderZero()
    {
        const QCborValue cbor = QCborValue::fromCbor(
            KeyedArchiver::archivedData(QVariantList{entry(makeBox(u"a"_s, QVariant(), QVariantList{1.5, true}))}));
        QCOMPARE(cbor,
                 QCborValue(QCborArray{
                     cborBox({{u"first"_s, u"a"_s}, {u"second"_s, nullptr}, {u"third"_s, QCborArray{1.5, true}}})}));
    }

    void writingStopsAtAnException()
    {
        for (const QVariant &unwritable :
             {QVariant(QPoint()), QVariant(QVariantList{1, QPoint()}), QVariant(QVariantMap{{u"a"_s, QPoint()}}),
              QVariant(QDateTime(QDate(20000, 1, 1), QTime()))}) {
            QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"archived"_s));
            const QVariantList boxes{entry(makeBox(u"a"_s, unwritable, u"c"_s)), entry(makeBox({}, {}, u"next"_s))};
            QVERIFY(isStoppedAtSecond(unarchived(KeyedArchiver::archivedData(boxes))));
        }
    }

    void readingStopsAtAnException_data()
    {
        QTest::addColumn<QCborValue>("unreadable");
        QTest::newRow("bytes") << QCborValue(QByteArray("x"));
        QTest::newRow("bytes in a list") << QCborValue(QCborArray{QByteArray("x")});
        QTest::newRow("unknown tag") << QCborValue(QCborTag(4711), u"x"_s);
        QTest::newRow("date of no text") << QCborValue(QCborKnownTags::UnixTime_t, u"x"_s);
        QTest::newRow("no date") << QCborValue(QCborTag(0), u"yesterday"_s);
        QTest::newRow("unknown simple value") << QCborValue(QCborSimpleType(99));
    }
    void readingStopsAtAnException()
    {
        QFETCH(QCborValue, unreadable);
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"archived"_s));
        const QCborArray boxes{cborBox({{u"first"_s, u"a"_s}, {u"second"_s, unreadable}, {u"third"_s, u"c"_s}}),
                               cborBox({{u"third"_s, u"next"_s}})};
        QVERIFY(isStoppedAtSecond(unarchived(QCborValue(boxes).toCbor())));
    }

    void newerFilesAreRead()
    {
        const QCborMap stranger{{0, u"Sphere"_s.leftJustified(100000, u'e')}, {u"radius"_s, 1}};
        const QCborMap box = cborBox({{u"zeroth"_s, 1},
                                      {u"third"_s, u"c"_s},
                                      {u"second"_s, stranger},
                                      {1, u"other key"_s},
                                      {u"first"_s, QCborArray{stranger, u"kept"_s, stranger}}});
        std::shared_ptr<Box> read;
        const QStringList logged = logOf([&] { read = unarchivedBox(QCborValue(box).toCbor()); });
        QCOMPARE(logged.size(), 1);
        QVERIFY(logged[0].contains(u"Sphere"_s) && logged[0].size() < 120);
        QCOMPARE(read->first, QVariant(QVariantList{u"kept"_s}));
        QVERIFY(!read->second.isValid());
        QCOMPARE(read->third, u"c"_s);
    }

    // What is refused when reading is not written in the first place, so that no record makes the file unreadable.
    void depthIsBounded()
    {
        const int maximum = KeyedArchiver::maximumDepth;
        QCOMPARE(unarchived(KeyedArchiver::archivedData(nestedList(maximum))), nestedList(maximum));

        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"too deep"_s));
        QVERIFY(!unarchived(KeyedArchiver::archivedData(nestedList(maximum + 1))).isValid());
        QVERIFY(!unarchived(QCborValue::fromVariant(nestedList(maximum + 1)).toCbor()).isValid());

        const auto fits = unarchivedBox(KeyedArchiver::archivedData(entry(makeBox(nestedList(maximum - 1), 2))));
        QCOMPARE(fits->first, nestedList(maximum - 1));
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"too deep"_s));
        const auto tooDeep = unarchivedBox(KeyedArchiver::archivedData(entry(makeBox(1, nestedList(maximum)))));
        QCOMPARE(tooDeep->first.toInt(), 1);
        QVERIFY(!tooDeep->second.isValid());

        const auto endless = makeBox(u"outermost"_s);
        endless->second = QVariantList{entry(endless)};
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"too deep"_s));
        QCOMPARE(unarchivedBox(KeyedArchiver::archivedData(entry(endless)))->first, u"outermost"_s);
        endless->second.clear();
    }

    void cutFilesAreRefused()
    {
        const QByteArray archive =
            KeyedArchiver::archivedData(QVariantList{entry(makeBox(u"text"_s, QDateTime::currentDateTimeUtc(), 1.5)),
                                                     QVariantMap{{u"k"_s, QVariantList{1, 300, 70000, 1LL << 40}}}});
        QVERIFY(unarchived(archive).isValid());
        for (qsizetype size = 0; size < archive.size(); ++size) {
            const QByteArray cut = archive.first(size); // a buffer of its own, so that reading past it is noticed
            QVERIFY2(!unarchived(cut).isValid(), QByteArray::number(size));
        }
        QVERIFY(!unarchived(archive + '\0').isValid());
    }

    void hostileFilesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("data");
        const auto row = [](const char *name, const char *hex) { QTest::newRow(name) << QByteArray::fromHex(hex); };
        row("list of 2^64-1 entries", "9bffffffffffffffff");
        row("list of 2^32 entries", "9b000000010000000000");
        row("map of 2^63 pairs", "bb800000000000000000");
        row("text of 2^64-1 bytes", "7bffffffffffffffff61");
        row("text of 2 GB", "7a7fffffff61");
        row("bytes of 2^62", "5b400000000000000000");
        row("endless list", "9f01ff");
        row("endless map without end", "bf0001");
        row("endless map ending inside a pair", "bf00ff");
        row("chunked text", "7f6161ff");
        row("stray end", "ff");
        row("reserved length", "1c");
        row("tag without value", "c0");
        row("endless tag", "df00");
        row("trailing item", "8000");
        QTest::newRow("nested lists") << QByteArray(1 << 20, '\x81');
        QTest::newRow("nested endless maps") << QByteArray(1 << 20, '\xbf');
        QTest::newRow("chain of tags") << QByteArray(1 << 20, '\xc6');
        QTest::newRow("nested lists of 2^32") << QByteArray::fromHex("9affffffff").repeated(1000);
    }
    void hostileFilesAreRefused()
    {
        QFETCH(QByteArray, data);
        QVERIFY(!unarchived(data).isValid());
        QVERIFY(!KeyedArchiveList::elements(data, u"Box"_s, "first"_L1));
    }

    // Each byte of an archive changed in turn: something or nothing comes back, and it can be archived again.
    void damagedFilesDoNoHarm()
    {
        QLoggingCategory::setFilterRules(u"brevanto.info=false"_s);
        const QByteArray archive = KeyedArchiver::archivedData(
            QVariantList{entry(makeBox(u"text"_s, QDateTime::currentDateTimeUtc(), QVariantMap{{u"k"_s, 1.5}})),
                         entry(makeBox(QVariantList{true, entry(makeBox(7))}, 70000))});
        QRandomGenerator random(1);
        for (qsizetype position = 0; position < archive.size(); ++position) {
            for (int round = 0; round < 64; ++round) {
                QByteArray damaged = archive;
                damaged[position] = char(random.bounded(256));
                const QVariant value = unarchived(damaged);
                QCOMPARE(unarchived(KeyedArchiver::archivedData(value)).isValid(), value.isValid());
            }
        }
        QLoggingCategory::setFilterRules({});
    }

    void listsAreRearrangedAsBytes()
    {
        const QByteArray undecodable = QByteArray::fromHex("d9126747") + "1234567"; // bytes under an unknown tag
        const QByteArray archive = QByteArray::fromHex("84")
            + KeyedArchiver::archivedData(entry(makeBox(u"a"_s, u"x"_s))) + undecodable
            + KeyedArchiver::archivedData(entry(makeBox(5))) + KeyedArchiver::archivedData(entry(makeBox(u"b"_s)));

        auto elements = KeyedArchiveList::elements(archive, u"Box"_s, "first"_L1).value();
        QCOMPARE(elements.size(), 4u);
        QCOMPARE(elements[0].text.value(), "a");
        QVERIFY(!elements[1].text);
        QVERIFY(!elements[2].text);
        QCOMPARE(elements[3].text.value(), "b");
        QCOMPARE(elements[1].bytes, undecodable);
        QVERIFY(!KeyedArchiveList::elements(archive.first(archive.size() - 1), u"Box"_s, "first"_L1));
        QVERIFY(!KeyedArchiveList::elements(KeyedArchiver::archivedData(u"text"_s), u"Box"_s, "first"_L1));

        std::ranges::rotate(elements, elements.begin() + 3);
        QBuffer file;
        file.open(QIODevice::WriteOnly);
        QVERIFY(KeyedArchiveList::write(elements, file));
        const auto rearranged = KeyedArchiveList::elements(file.data(), u"Box"_s, "first"_L1).value();
        QCOMPARE(rearranged.size(), 4u);
        QCOMPARE(rearranged[0].text.value(), "b");
        QCOMPARE(rearranged[1].text.value(), "a");
        QCOMPARE(rearranged[2].bytes, undecodable);
    }
};

QTEST_APPLESS_MAIN(TestKeyedArchiver)
#include "tst_KeyedArchiver.moc"
