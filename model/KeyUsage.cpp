#include "KeyUsage.h"

#include "KeyUsageRecords.h"

#include <QTextBoundaryFinder>
#include <algorithm>
#include <array>
#include <vector>

namespace kavelo {
namespace {

static_assert(NumberOfKeyUsageRecords == Max_UsageID + 1);

struct KeyWords
{
    QString name;
    QString explanation;
};

bool hasRecord(int usageId)
{
    return usageId >= 0 && usageId <= Max_UsageID;
}

/// Where in `text`, in UTF-16 units, each of its characters begins and, last, where the text ends.
std::vector<qsizetype> characterBounds(const QString &text)
{
    std::vector<qsizetype> bounds{0};
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (finder.toNextBoundary() > 0) {
        bounds.push_back(finder.position());
    }
    return bounds;
}

/// Characters `first` to `last` of `text`, both included, which it must have.
QString charactersOf(const QString &text, int first, int last)
{
    const std::vector<qsizetype> bounds = characterBounds(text);
    const auto from = static_cast<std::size_t>(first);
    const auto end = static_cast<std::size_t>(last) + 1;
    return text.mid(bounds.at(from), bounds.at(end) - bounds.at(from));
}

int numberOfCharacters(const QString &text)
{
    return static_cast<int>(characterBounds(text).size()) - 1;
}

// The name ends at the first "] ", so it may hold brackets itself; a record that is nothing but
// level and name ends it one character before its own end.
QString nameIn(const QString &record)
{
    const QString label = QStringLiteral("Name:[");
    const int separator = IndexOf(record, QStringLiteral("] "));
    const int end = separator < 0 ? numberOfCharacters(record) - 1 : separator;
    return charactersOf(record, IndexOf(record, label) + numberOfCharacters(label), end - 1);
}

QString explanationIn(const QString &record)
{
    const QString label = QStringLiteral("Explanation:");
    const int labelAt = IndexOf(record, label);
    if (labelAt < 0) {
        return {};
    }
    return charactersOf(record, labelAt + numberOfCharacters(label),
                        numberOfCharacters(record) - 1);
}

// Finding characters is slow beside a description's worth of names, so every record is cut up once.
const KeyWords &wordsOf(int usageId)
{
    static const auto Words = [] {
        std::array<KeyWords, NumberOfKeyUsageRecords> words;
        for (int id = 0; id <= Max_UsageID; ++id) {
            const QString record = GetKeyContents(id);
            words.at(static_cast<std::size_t>(id)) = {nameIn(record), explanationIn(record)};
        }
        return words;
    }();
    return Words.at(static_cast<std::size_t>(usageId));
}

} // namespace

QString GetKeyContents(int UsageID)
{
    if (!hasRecord(UsageID)) {
        return QStringLiteral("Error at GetKeyContentsJ()");
    }
    const QStringView record = KeyUsageRecords.at(static_cast<std::size_t>(UsageID));
    return QString::fromRawData(record.data(), record.size());
}

QString GetKeyName(int UsageID)
{
    return hasRecord(UsageID) ? wordsOf(UsageID).name : QString();
}

QString GetKeyExplanation(int UsageID)
{
    return hasRecord(UsageID) ? wordsOf(UsageID).explanation : QString();
}

int IndexOf(const QString &SearchFor, const QString &Keyword)
{
    const std::vector<qsizetype> bounds = characterBounds(SearchFor);
    // Units that match inside a character, such as a letter under an accent, are no match.
    const auto isBound = [&bounds](qsizetype unit) {
        return std::binary_search(bounds.begin(), bounds.end(), unit);
    };
    qsizetype at = SearchFor.indexOf(Keyword);
    while (at >= 0 && !(isBound(at) && isBound(at + Keyword.size()))) {
        at = SearchFor.indexOf(Keyword, at + 1);
    }
    if (at < 0) {
        return -1;
    }
    return static_cast<int>(std::lower_bound(bounds.begin(), bounds.end(), at) - bounds.begin());
}

bool isStandardKey(int UsageID)
{
    constexpr int LevelFirst = 6;
    constexpr int LevelLast = 13;
    return charactersOf(GetKeyContents(UsageID), LevelFirst, LevelLast) ==
           QStringLiteral("STANDARD");
}

} // namespace kavelo
