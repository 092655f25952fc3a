#include "platform/linux/network/appcast.h"

#include <QUrl>
#include <QVersionNumber>
#include <QXmlStreamReader>
#include <optional>

namespace norvane {

namespace {

struct Item {
    QVersionNumber version; ///< Null: none that can be compared.
    QUrl page;
};

QVersionNumber versionFrom(const QString& text) {
    qsizetype end = 0;
    const QVersionNumber version = QVersionNumber::fromString(text, &end);
    return end == text.size() ? version : QVersionNumber();
}

QVersionNumber versionOf(const QXmlStreamAttributes& attributes) {
    for (const QXmlStreamAttribute& attribute : attributes)
        if (attribute.name() == QLatin1String("version"))
            return versionFrom(attribute.value().toString());
    return {};
}

Item readItem(QXmlStreamReader& reader) {
    Item item;
    while (reader.readNextStartElement()) {
        const bool ofRss = reader.namespaceUri().isEmpty();
        if (ofRss && reader.name() == QLatin1String("link")) {
            item.page = QUrl(reader.readElementText().trimmed(), QUrl::StrictMode);
            continue;
        }
        if (ofRss && reader.name() == QLatin1String("enclosure"))
            item.version = versionOf(reader.attributes());
        reader.skipCurrentElement();
    }
    return item;
}

/// "1.2" and "1.2.0" are the same version.
bool isNewer(const QVersionNumber& one, const QVersionNumber& other) {
    return one.normalized() > other.normalized();
}

bool isUsable(const Item& item) {
    return !item.version.isNull() && item.page.isValid() && item.page.scheme() == QLatin1String("https") &&
           !item.page.host().isEmpty();
}

/// None: the document is not what it should be.
std::optional<Item> newestItem(const QByteArray& xml) {
    QXmlStreamReader reader(xml);
    Item newest;
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::DTD)
            return std::nullopt; // no feed needs entities of its own
        if (token != QXmlStreamReader::StartElement || reader.name() != QLatin1String("item"))
            continue;
        const Item item = readItem(reader);
        if (isUsable(item) && isNewer(item.version, newest.version))
            newest = item;
    }
    if (reader.hasError() || newest.version.isNull())
        return std::nullopt;
    return newest;
}

} // namespace

UpdateResult readAppcast(const QByteArray& xml, const QString& ownVersion) {
    const std::optional<Item> newest = newestItem(xml);
    if (!newest)
        return {.kind = UpdateResult::Kind::unreadable};
    if (!isNewer(newest->version, versionFrom(ownVersion)))
        return {.kind = UpdateResult::Kind::upToDate};
    return {.kind = UpdateResult::Kind::available,
            .version = newest->version.toString().toStdString(),
            .page = newest->page.toString(QUrl::FullyEncoded).toStdString()};
}

} // namespace norvane
