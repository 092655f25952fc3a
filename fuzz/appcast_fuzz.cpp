#include "fuzz/fuzz.h"
#include "platform/linux/network/appcast.h"

namespace norvane {

void fuzz(std::string_view input) {
    const QByteArray xml(input.data(), static_cast<qsizetype>(input.size()));
    const UpdateResult result = readAppcast(xml, "1.2.0");
    check(result.kind != UpdateResult::Kind::unreachable, "A feed was read.");
    const bool available = result.kind == UpdateResult::Kind::available;
    check(available == !result.version.empty() && available == !result.page.empty(),
          "An update, and nothing else, has a version and a page.");
    if (!available)
        return;
    check(result.page.starts_with("https://"), "The page of an update is secure.");
    check(readAppcast(xml, QString::fromStdString(result.version)).kind == UpdateResult::Kind::upToDate,
          "Whoever has the newest version is up to date.");
}

} // namespace norvane
