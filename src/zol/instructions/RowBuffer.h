#pragma once
#include "InstructionRow.h"
#include <QList>
#include <QSqlDatabase>

namespace zol {

class ProtocolGrid;

// The row buffer ProtokollPositionenBuffer, shared by all protocol windows of
// a run: emptied when the protocol frame loads and by every copy.
void clearRowBuffer(const QSqlDatabase &db);
int rowBufferCount(const QSqlDatabase &db);
QList<InstructionRow> rowBufferRows(const QSqlDatabase &db);

// Replaces the buffer by these rows, in one unit. An empty field is kept as
// one blank " ". Nothing selected leaves the buffer empty.
void copyToRowBuffer(const QSqlDatabase &db, const QList<InstructionRow> &rows);

struct PasteResult {
    int total = 0;      // rows in the buffer
    int written = 0;
    int refused = 0;    // existing or wrong Objekt/Anweisung numbers
};

// Pastes every buffered row into the grid's component under its own numbers,
// through the row rule, and reports the outcome. Rows whose key exists or
// whose values the row rule refuses are counted and left out; all others are
// written in one unit. Any other fault shows its message and writes nothing.
PasteResult pasteRowBuffer(ProtocolGrid &grid);

}
