#pragma once

#include "bankfiles/statement.h"

#include <QByteArray>

// Open Financial Exchange downloads: OFX 1.x (SGML) and 2.x (XML), and Quicken's QFX,
// read through libofx.
namespace OfxReader {

// Whether the bytes are an OFX or QFX file: an "OFXHEADER:" header, or an "<?OFX"
// processing instruction or an <OFX> element at the top, after an optional
// byte-order mark and blanks.
bool looksLike(const QByteArray &bytes);

// The lines of the file's bank or credit card statement: those of its first such
// account that has lines (the lines of any other account are left out). The day,
// amount and payee are those the file writes (NAME, else the PAYEE's name, else MEMO);
// the reference is the FITID. A file of investment accounts only, or one libofx
// cannot make out, gives an `error`. Safe to call from any thread, one read at a time.
Statement read(const QByteArray &bytes);

} // namespace OfxReader
