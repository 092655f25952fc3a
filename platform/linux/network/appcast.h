// The feed that tells of new versions.
#pragma once

#include <QByteArray>
#include <QString>

#include "platform/update_service.h"

namespace norvane {

/// Compares the newest version of an appcast with the program's own. An appcast is an RSS 2.0 document; an
/// item is a version if it has a <link> to an https page and an <enclosure> whose attribute "version", of any
/// namespace, is made of numbers and dots. A document that is not well-formed, has a document type or no
/// version fails.
[[nodiscard]] UpdateResult readAppcast(const QByteArray& xml, const QString& ownVersion);

} // namespace norvane
