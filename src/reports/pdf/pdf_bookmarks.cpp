#include "reports/pdf/pdf_bookmarks.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

namespace vorex {

namespace {

/// An entry of the outline, or its root, with its entries so far.
struct Entry {
    QPDFObjectHandle object;
    int level;
    QPDFObjectHandle last;  ///< of its children
    long long below = 0;    ///< entries of all depths below it, which are shown open
};

/// Removes a complete entry from the path, and adds its count to the one above.
void Close(std::vector<Entry>& path) {
    Entry done = std::move(path.back());
    path.pop_back();
    if (done.below > 0) {
        done.object.replaceKey("/Last", done.last);
        done.object.replaceKey("/Count", QPDFObjectHandle::newInteger(done.below));
    }
    if (!path.empty()) path.back().below += done.below + 1;
}

QPDFObjectHandle NewItem(QPDF& file, const Bookmark& bookmark, std::vector<QPDFPageObjectHelper>& pages) {
    auto item = file.makeIndirectObject(QPDFObjectHandle::newDictionary());
    item.replaceKey("/Title", QPDFObjectHandle::newUnicodeString(bookmark.title));
    auto place = QPDFObjectHandle::newArray();
    place.appendItem(pages.at(bookmark.page).getObjectHandle());
    place.appendItem(QPDFObjectHandle::newName("/XYZ"));
    place.appendItem(QPDFObjectHandle::newInteger(0));
    place.appendItem(QPDFObjectHandle::newInteger(bookmark.top));
    place.appendItem(QPDFObjectHandle::newInteger(0));
    item.replaceKey("/Dest", place);
    return item;
}

void AddOutline(QPDF& file, const std::vector<Bookmark>& bookmarks) {
    auto pages = QPDFPageDocumentHelper(file).getAllPages();
    const auto outlines = file.makeIndirectObject(QPDFObjectHandle::parse("<< /Type /Outlines >>"));
    std::vector<Entry> path = {{outlines, -1, {}}};
    for (const Bookmark& bookmark : bookmarks) {
        while (path.back().level >= bookmark.level) Close(path);
        Entry& parent = path.back();
        auto item = NewItem(file, bookmark, pages);
        item.replaceKey("/Parent", parent.object);
        if (parent.last.isInitialized()) {
            item.replaceKey("/Prev", parent.last);
            parent.last.replaceKey("/Next", item);
        } else {
            parent.object.replaceKey("/First", item);
        }
        parent.last = item;
        path.push_back({item, bookmark.level, {}});
    }
    while (!path.empty()) Close(path);
    QPDFObjectHandle root = file.getRoot();
    root.replaceKey("/Outlines", outlines);
    root.replaceKey("/PageMode", QPDFObjectHandle::newName("/UseOutlines"));
}

}  // namespace

std::string WithBookmarks(std::string_view pdf, const std::vector<Bookmark>& bookmarks,
                          const std::string& language) {
    QPDF file;
    file.processMemoryFile("report", pdf.data(), pdf.size());
    QPDFObjectHandle root = file.getRoot();
    root.replaceKey("/Lang", QPDFObjectHandle::newUnicodeString(language));
    if (!bookmarks.empty()) AddOutline(file, bookmarks);
    QPDFWriter writer(file);
    writer.setOutputMemory();
    // Object streams are newer than the PDF version of PDF/A-1.
    writer.setObjectStreamMode(qpdf_o_disable);
    writer.write();
    const auto buffer = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

}  // namespace vorex
