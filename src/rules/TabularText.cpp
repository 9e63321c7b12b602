#include "rules/TabularText.h"

#include "rules/DelimitedWriter.h"

#include <algorithm>
#include <QBuffer>
#include <utility>

namespace qor {

namespace {

/// In the order of TableLayout::columns.
constexpr std::array entryFields{&DirectoryEntry::lastName, &DirectoryEntry::firstName, &DirectoryEntry::extension};

char SeparatorOf(const QString& text)
{
    for (const char separator : {'\t', ';'}) {
        if (text.contains(QLatin1Char(separator)))
            return separator;
    }
    return ',';
}

std::unique_ptr<QIODevice> DeviceOf(const QString& text)
{
    auto buffer = std::make_unique<QBuffer>();
    buffer->setData(text.toUtf8());
    buffer->open(QIODevice::ReadOnly);
    return buffer;
}

} // namespace

TabularReader::TabularReader(const QString& text) : TabularReader(DeviceOf(text), {.separator = SeparatorOf(text)}) {}

TabularReader::TabularReader(std::unique_ptr<QIODevice> text, const TableLayout& layout)
    : mText(std::move(text)), mLayout(layout), mReader(*mText, layout.separator)
{
    Skip();
}

TabularReader::TabularReader(QIODevice& device, const TableLayout& layout)
    : mLayout(layout), mReader(device, layout.separator)
{
    Skip();
}

QStringList TabularReader::ReadRow()
{
    QStringList row = QStringList{mEntry.lastName, mEntry.firstName, mEntry.extension}.first(mFieldCount);
    Skip();
    return row;
}

DirectoryEntry TabularReader::ReadEntry()
{
    DirectoryEntry entry = std::move(mEntry);
    Skip();
    return entry;
}

void TabularReader::Skip()
{
    bool isFound = false;
    while (!isFound && !mReader.AtEnd()) {
        mLine = mReader.Line();
        ReadFields();
        isFound = mLine >= mLayout.firstLine && !IsLeftOut();
    }
    if (!isFound)
        mFieldCount = 0;
}

void TabularReader::ReadFields()
{
    for (const auto field : entryFields)
        (mEntry.*field).resize(0); // which keeps its room
    mFieldCount = 0;
    bool more = true;
    for (int column = 0; more; ++column) {
        const auto* const wanted = std::ranges::find(mLayout.columns, column);
        const auto index = wanted - mLayout.columns.begin();
        const bool isWanted = wanted != mLayout.columns.end();
        more = mReader.ReadField(isWanted ? &(mEntry.*entryFields.at(index)) : nullptr);
        if (isWanted)
            mFieldCount = std::max(mFieldCount, static_cast<int>(index) + 1);
    }
}

bool TabularReader::IsLeftOut() const
{
    const auto isEmpty = [this](auto field) { return (mEntry.*field).isEmpty(); };
    const auto isCaption = [this](auto field, const QString& caption) {
        const QString& text = mEntry.*field;
        return text.size() == caption.size() && text.compare(caption, Qt::CaseInsensitive) == 0;
    };
    return std::ranges::all_of(entryFields, isEmpty) || std::ranges::equal(entryFields, mLayout.captions, isCaption);
}

QString TabularText(const std::vector<DirectoryEntry>& entries)
{
    QString text;
    for (const DirectoryEntry& entry : entries) {
        text += DelimitedLine({entry.lastName, entry.firstName, entry.extension, entry.prompt}, Quoting::WhereNeeded,
                              u'\t') +
                u'\n';
    }
    return text;
}

} // namespace qor
