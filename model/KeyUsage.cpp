#include "KeyUsage.h"

#include "KeyUsageRecords.h"

#include <QTextBoundaryFinder>
#include <algorithm>
#include <array>
#include <vector>

namespace kavelo {
namespace {

struct KeyWords
{
    QString name;
    QString explanation;
};

bool hasRecord(int usageId)
{
    return usageId >= 0 && usageId <= Max_UsageID;
}

/// The positions in `text`, in UTF-16 units, at which its characters begin, and the length of
/// `text` as the last one.
std::vector<qsizetype> characterBounds(const QString &text)
{
    std::vector<qsizetype> bounds{0};
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (finder.toNextBoundary() > 0) {
        bounds.push_back(finder.position());
    }
    return bounds;
}

/// Characters `first` to `last` of `text`, both included. Both must exist.
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

// A name may contain brackets: when an explanation follows, the name ends at the first "] ".
// Otherwise it ends one character before the end of the record.
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

// Finding character boundaries is slow, and a description needs many names, so every record is
// split only once.
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
    // A match inside a character, such as a letter without its combining accent, does not count.
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
