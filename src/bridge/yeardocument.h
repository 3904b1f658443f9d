#pragma once

#include "store/reports.h"

#include <QString>

class QImage;
class QPagedPaintDevice;

// The year's report as a printed document for the accountant: the year's figures on
// one A4 or Letter page for a typical year, more pages (each with a header) when the
// lists run long. Drawn with QPainter, so a PDF writer and a printer get the same pages.
namespace YearDocument {

// Draws the report onto `device` (a QPdfWriter or a QPrinter), page after page, in
// the book's currency as Money::s writes it. Returns the number of pages drawn.
int paint(const YearReport &report, QPagedPaintDevice &device);

// The first page as a picture on white at `dpi` dots per inch, for the screens' pictures.
QImage firstPage(const YearReport &report, int dpi);

// Writes the report as a PDF file at `path`, replacing it whole or not at all. On
// failure returns false with the reason in `reason`.
bool writePdf(const YearReport &report, const QString &path, QString *reason);

// The title the document carries: "Year's report 2025".
QString title(int year);

} // namespace YearDocument
