#include "host/page/page_writer.h"

#include <iostream>
#include <string_view>

#include "host/files.h"
#include "host/output_files.h"
#include "host/page/page_data.h"
#include "host/page/page_source.h"
#include "host/page/record_reader.h"
#include "host/page/source_hash.h"
#include "host/text_table.h"

namespace host {
namespace {

/// Appends the template up to the mark, then `text`, and moves behind the mark.
void Fill(std::string& page, std::string_view& rest, std::string_view mark, std::string_view text) {
    const std::size_t at = rest.find(mark);
    page.append(rest.substr(0, at));
    page.append(text);
    rest.remove_prefix(at + mark.size());
}

/// Nothing may be loaded or sent, and only the page's own style and script count.
std::string Policy() {
    return "default-src 'none'; style-src '" + SourceHash(kPageStyle) + "'; script-src '" +
           SourceHash(kPageScript) + "'; base-uri 'none'; form-action 'none'";
}

}  // namespace

std::string MakePage(const RunRecord& record) {
    std::string page;
    std::string_view rest = kPageTemplate;
    Fill(page, rest, "@POLICY@", Policy());
    Fill(page, rest, "@STYLE@", kPageStyle);
    Fill(page, rest, "@RECORD@", PageData(record));
    Fill(page, rest, "@SCRIPT@", kPageScript);
    page.append(rest);
    return page;
}

void WritePage(const RunRecord& record, const std::string& path) {
    ReplaceTextFile(path, MakePage(record), "--page");
}

void WritePageFromFiles(const Options& options) {
    RefuseSameFiles(options);
    const RunRecord record = ReadRecord(options.from, options.fromLog);
    WritePage(record, options.page);
    std::cout << "The page is in " << options.page << ", with "
              << Plural(record.events.size(), "event") << " and "
              << Plural(record.lines.size(), "log line") << "\n";
}

}  // namespace host
