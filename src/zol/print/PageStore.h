#pragma once
#include <QString>
#include <vector>

namespace zol {

// One call of PrintString: the text and where and how it stood, in twips
// from the top left corner of the printable area.
struct PrintItem {
    float X = 0;
    float Y = 0;
    bool Bold = false;
    QString Text;
};

// A page of the store. Item 0 is always an empty text at 0,0; it is harmless
// when drawn and keeps every page non-empty.
struct PrintPage {
    std::vector<PrintItem> items;
    PrintPage() { items.emplace_back(); }
};

// The font and paper of a job. Font name and size are the job's, not the
// item's: bold is the only attribute a report can vary.
struct JobFormat {
    bool landscape = false;
    int pointSize = 8;
};

// The stored pages of a job, kept so that any range can be redrawn or sent
// to a device again without running the report. The page being written is
// always the last one.
struct PageStore {
    JobFormat format;
    std::vector<PrintPage> pages;
    int pageCount() const { return int(pages.size()); }
    const PrintPage &page(int number) const { return pages[size_t(number - 1)]; }   // 1-based
};

}
