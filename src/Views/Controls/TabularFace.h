#pragma once

#include <QByteArray>
#include <QRawFont>
#include <QString>

namespace ostrella {

/// A face of type made anew, with digits of one width.
namespace TabularFace {

/// Whether the face's digits have one width as they are.
bool hasEqualDigits(const QRawFont& face);

/// The face as a font file of the family `family`, in which its feature of tabular digits is always
/// on: its record in the table of substitutions gets the tag of ligatures that no text goes
/// without. Empty where the face has no such feature, or that tag already.
QByteArray file(const QRawFont& face, const QString& family);

} // namespace TabularFace

} // namespace ostrella
