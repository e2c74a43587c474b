#include "host/pdf/pdf_bookmarks.h"

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

namespace vorex {

std::string WithBookmarks(std::string_view pdf, const std::vector<Bookmark>& bookmarks,
                          const std::string& language) {
    QPDF file;
    file.processMemoryFile("report", pdf.data(), pdf.size());
    auto pages = QPDFPageDocumentHelper(file).getAllPages();
    QPDFObjectHandle root = file.getRoot();
    root.replaceKey("/Lang", QPDFObjectHandle::newUnicodeString(language));
    if (!bookmarks.empty()) {
        auto outlines = file.makeIndirectObject(QPDFObjectHandle::parse("<< /Type /Outlines >>"));
        std::vector<QPDFObjectHandle> items;
        for (const Bookmark& bookmark : bookmarks) {
            auto item = file.makeIndirectObject(QPDFObjectHandle::newDictionary());
            item.replaceKey("/Title", QPDFObjectHandle::newUnicodeString(bookmark.title));
            item.replaceKey("/Parent", outlines);
            auto place = QPDFObjectHandle::newArray();
            place.appendItem(pages.at(bookmark.page).getObjectHandle());
            place.appendItem(QPDFObjectHandle::newName("/XYZ"));
            place.appendItem(QPDFObjectHandle::newInteger(0));
            place.appendItem(QPDFObjectHandle::newInteger(bookmark.top));
            place.appendItem(QPDFObjectHandle::newInteger(0));
            item.replaceKey("/Dest", place);
            if (!items.empty()) {
                item.replaceKey("/Prev", items.back());
                items.back().replaceKey("/Next", item);
            }
            items.push_back(item);
        }
        outlines.replaceKey("/First", items.front());
        outlines.replaceKey("/Last", items.back());
        outlines.replaceKey("/Count", QPDFObjectHandle::newInteger(static_cast<long long>(items.size())));
        root.replaceKey("/Outlines", outlines);
        root.replaceKey("/PageMode", QPDFObjectHandle::newName("/UseOutlines"));
    }
    QPDFWriter writer(file);
    writer.setOutputMemory();
    // Streams of objects came after the version that PDF/A-1 is.
    writer.setObjectStreamMode(qpdf_o_disable);
    writer.write();
    const auto buffer = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

}  // namespace vorex
