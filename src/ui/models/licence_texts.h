// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

namespace velun {

/// The text of a licence that models have, from data/licences; empty if the program has no copy.
QString fullLicenceText(const QString& licence);

/// Where its makers publish the text of a licence that the program has no copy of; empty if that is
/// not known.
QUrl licenceAddress(const QString& licence);

}  // namespace velun
