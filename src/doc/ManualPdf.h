#pragma once
#include <QString>
#include <QStringList>

// Lays out Markdown chapters as one A4 PDF: the chapters in the given order, each
// on a new page, pictures (relative to pictureDir) scaled down to the text width,
// page numbers at the foot. Returns an empty string, else what went wrong.
QString writeManualPdf(const QStringList &chapterFiles, const QString &pictureDir, const QString &pdfPath);
