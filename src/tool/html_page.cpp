// The page has an index of the units; for each unit its variables and its statements beside the lines of the
// source that they came from; and all entries with links between them. It needs no other file.
#include "tool/html_page.h"

#include "driver/deep_call.h"
#include "il/arena.h"
#include "il/entries.h"
#include "il/kind_names.h"
#include "library/host.h"
#include "output/fortran_printer.h"
#include "output/il_dump.h"
#include "output/il_reader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace zf90 {

namespace {

std::FILE *page;
const il_header *page_header;

// ---- text

// What a printer prints, with its angle brackets as HTML has them. Ampersands it leaves as they are.
template <class Print> std::string printed(Print print) {
    char *text = nullptr;
    std::size_t size = 0;
    std::FILE *const before = dump_stream;
    dump_stream = open_memory_stream(text, size);
    dump_html = true;
    set_print_hook(nullptr);
    print();
    if (std::ferror(dump_stream) || std::fclose(dump_stream) != 0) {
        out_of_memory();
    }
    check_memory_stream_text(text);
    dump_stream = before;
    std::string result(text, size);
    std::free(text);
    return result;
}

// Writes text with some characters replaced: `escape` returns what stands for the one at the head of a text,
// or null for the character itself.
void put_escaped(std::string_view text, const char *specials, const char *(*escape)(std::string_view)) {
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find_first_of(specials), text.size());
        std::fwrite(text.data(), 1, plain, page);
        text.remove_prefix(plain);
        if (!text.empty()) {
            const char *const replacement = escape(text);
            std::fwrite(replacement ? replacement : text.data(), 1,
                        replacement ? std::strlen(replacement) : 1, page);
            text.remove_prefix(1);
        }
    }
}

// Printed text, with its ampersands as HTML has them.
void put_printed(std::string_view text) {
    put_escaped(text, "&", [](std::string_view rest) -> const char * {
        return rest.starts_with("&lt;") || rest.starts_with("&gt;") ? nullptr : "&amp;";
    });
}

// Plain text.
void put_text(std::string_view text) {
    put_escaped(text, "<>&\"", [](std::string_view rest) -> const char * {
        switch (rest.front()) {
        case '<': return "&lt;";
        case '>': return "&gt;";
        case '&': return "&amp;";
        default: return "&quot;";
        }
    });
}

void put(const char *markup) { std::fputs(markup, page); }

unsigned long number_of(const il_entry *entry) { return entry->il_id & il_number_mask; }

std::string_view name_of(const named_entry *entry) {
    return entry->source_corresp.name ? entry->source_corresp.name->spelling : "";
}

// ---- the source

struct source_text {
    const source_file *file;
    std::vector<std::string> lines; // empty if the file cannot be read
};

std::vector<source_text> sources;
std::string directory; // of the file of intermediate language, with a slash

// The next line, without its end. False at the end of the file.
bool read_line(std::FILE *stream, std::string &line) {
    line.clear();
    int c = 0;
    while ((c = std::fgetc(stream)) != EOF && c != '\n') {
        line += static_cast<char>(c);
    }
    return c != EOF || !line.empty();
}

bool read_lines(const std::string &path, std::vector<std::string> &lines) {
    std::FILE *const stream = std::fopen(path.c_str(), "r");
    if (!stream) {
        return false;
    }
    for (std::string line; read_line(stream, line);) {
        lines.push_back(std::move(line));
    }
    if (std::ferror(stream)) {
        lines.clear();
    }
    std::fclose(stream);
    return !lines.empty();
}

// By the path that the compiler opened, and if it is relative from where the file stands; by the name alone
// beside the file.
void find_lines(source_text &source) {
    const char *const full = source.file->full_name;
    if (!full) {
        return;
    }
    const char *const slash = std::strrchr(full, '/');
    for (const std::string &path :
         {std::string(full), directory + full, directory + (slash ? slash + 1 : full)}) {
        if (read_lines(path, source.lines)) {
            return;
        }
    }
}

const std::string *line_of_source(const source_place &place) {
    if (!place.file) {
        return nullptr;
    }
    for (const source_text &known : sources) {
        if (known.file == place.file) {
            const bool there = place.line >= 1 && place.line <= known.lines.size();
            return there ? &known.lines[place.line - 1] : nullptr;
        }
    }
    sources.push_back({place.file, {}});
    find_lines(sources.back());
    return line_of_source(place);
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    const std::size_t last = text.find_last_not_of(" \t\r");
    return first == std::string_view::npos ? std::string_view() : text.substr(first, last - first + 1);
}

// ---- the units

const char *unit_word(const object *unit) {
    switch (unit->storage_class) {
    case sc_program: return "program";
    case sc_blockdata: return "block data";
    case sc_module: return "module";
    default: break;
    }
    const type *const t = unit->type;
    const bool is_function = t && t->type_code == tk_routine && t->routine.return_type->type_code != tk_void;
    return is_function ? "function" : "subroutine";
}

void put_unit_name(const object *unit) {
    const std::string_view name = name_of(unit);
    put(unit_word(unit));
    put(" ");
    put_text(name.empty() ? "(unnamed)" : name);
}

struct unit_place {
    const object *unit;
    unsigned depth;
};

// The units in the order of the source, each before those within it.
std::vector<unit_place> all_units() {
    std::vector<unit_place> units;
    struct position {
        const object *next;
        unsigned depth;
    };
    std::vector<position> open;
    if (page_header->primary_scope) {
        open.push_back({page_header->primary_scope->objects, 0});
    }
    while (!open.empty()) {
        const object *const o = open.back().next;
        const unsigned depth = open.back().depth;
        if (!o) {
            open.pop_back();
            continue;
        }
        open.back().next = o->next;
        const bool is_unit = o->storage_class >= sc_external && o->storage_class <= sc_internal &&
                             o->storage_class != sc_intrinsic && !o->is_fortran_entry && !o->is_parameter;
        const scope *const contents = is_unit ? o->variant.assoc_scope : nullptr;
        const bool has_body = contents && (contents->assoc_block || o->storage_class == sc_module ||
                                           o->storage_class == sc_blockdata);
        if (has_body) {
            units.push_back({o, depth});
            open.push_back({contents->objects, depth + 1});
        }
    }
    return units;
}

void put_index(const std::vector<unit_place> &units) {
    put("<nav>\n<h2>Units</h2>\n<ul>\n");
    for (const unit_place &u : units) {
        std::fprintf(page, "<li style=\"margin-left:%uem\"><a href=\"#unit_%lu\">", u.depth,
                     number_of(u.unit));
        put_unit_name(u.unit);
        put("</a></li>\n");
    }
    put("</ul>\n<p><a href=\"#entries\">All entries</a></p>\n</nav>\n");
}

void put_variable(const object *o) {
    const type *const t = o->type;
    std::fprintf(page, "<tr><td><a href=\"#object_%lu\">", number_of(o));
    const std::string_view name = name_of(o);
    put_text(name.empty() ? "(unnamed)" : name);
    put("</a></td><td>");
    put_printed(printed([&] { print_type(t); }));
    std::fprintf(page, "</td><td>%s</td><td class=\"number\">", enumerator_name(o->storage_class) + 3);
    if (t->size > 0) {
        std::fprintf(page, "%u", t->size);
    }
    put("</td><td class=\"number\">");
    if (o->storage_class == sc_associated) {
        std::fprintf(page, "%d in <a href=\"#object_%lu\">", o->association_offset,
                     number_of(o->assoc.variable));
        put_text(name_of(o->assoc.variable).empty() ? "storage" : name_of(o->assoc.variable));
        put("</a>");
    }
    put("</td></tr>\n");
}

void put_variables(const scope *contents) {
    put("<table class=\"variables\">\n<tr><th>name</th><th>type</th><th>class</th><th>bytes</th>"
        "<th>offset</th></tr>\n");
    for (const object *o = contents->objects; o; o = o->next) {
        if (o->type) {
            put_variable(o);
        }
    }
    put("</table>\n");
}

// ---- the statements

struct statement_row {
    const struct statement *statement; // null for the second half of an IF or WHERE construct
    const char *text;
    unsigned depth;
};

void collect_rows(const statement *s, unsigned depth, std::vector<statement_row> &rows);

void collect_halves(const statement *first, const char *between, const statement *second, unsigned depth,
                    std::vector<statement_row> &rows) {
    collect_rows(first, depth + 1, rows);
    if (second) {
        rows.push_back({nullptr, between, depth});
        collect_rows(second, depth + 1, rows);
    }
}

void collect_here(const statement *s, unsigned depth, std::vector<statement_row> &rows) {
    if (s->kind == stmk_block) {
        for (const statement *t = s->statements; t; t = t->next) {
            collect_rows(t, depth, rows);
        }
        return;
    }
    rows.push_back({s, nullptr, depth});
    switch (s->kind) {
    case stmk_if: collect_halves(s->then_statement, "else", s->else_statement, depth, rows); break;
    case stmk_where:
        collect_halves(s->where_assignment, "elsewhere", s->elsewhere_assignment, depth, rows);
        break;
    case stmk_while:
    case stmk_select: collect_rows(s->body_statement, depth + 1, rows); break;
    case stmk_ido:
    case stmk_fdo: collect_rows(s->loop_statement, depth + 1, rows); break;
    case stmk_case: collect_rows(s->case_statements, depth + 1, rows); break;
    case stmk_fentry:
        for (const statement *t = s->prologue; t; t = t->next) {
            collect_rows(t, depth + 1, rows);
        }
        break;
    default: break;
    }
}

void collect_rows(const statement *s, unsigned depth, std::vector<statement_row> &rows) {
    if (s) {
        deep_call([&] {
            collect_here(s, depth, rows);
            return true;
        });
    }
}

std::string text_of_statement(const statement *s) {
    if (s->kind == stmk_label) {
        const std::string_view name = name_of(s->label);
        return name.empty() ? std::string() : std::string(name) + ":";
    }
    return printed([&] { print_statement(const_cast<il_header *>(page_header), s, false); });
}

void put_row(const statement_row &row, source_place &last) {
    constexpr unsigned deepest = 30; // further in the text would leave the window
    const unsigned indent = row.depth < deepest ? row.depth : deepest;
    put("<tr><td class=\"number\">");
    const source_place place =
        row.statement ? find_source_place(page_header, row.statement->source_pos.seq) : source_place{};
    const bool is_new = place.file && (place.file != last.file || place.line != last.line);
    if (is_new) {
        std::fprintf(page, "%u", place.line);
        last = place;
    }
    put("</td><td class=\"source\">");
    if (const std::string *line = is_new ? line_of_source(place) : nullptr) {
        put_text(*line);
    }
    std::fprintf(page, "</td><td style=\"padding-left:%uem\">", 1 + indent);
    if (row.statement) {
        std::fprintf(page, "<a href=\"#statement_%lu\">%s</a> ", number_of(row.statement),
                     enumerator_name(row.statement->kind) + std::strlen("stmk_"));
        put_printed(trimmed(text_of_statement(row.statement)));
    } else {
        put(row.text);
    }
    put("</td></tr>\n");
}

void put_statements(const scope *contents) {
    std::vector<statement_row> rows;
    collect_rows(contents->assoc_block, 0, rows);
    if (rows.empty()) {
        return;
    }
    put("<table class=\"statements\">\n<tr><th>line</th><th>source</th><th>statement</th></tr>\n");
    source_place last{};
    for (const statement_row &row : rows) {
        put_row(row, last);
    }
    put("</table>\n");
}

void put_unit(const object *unit) {
    std::fprintf(page, "<section id=\"unit_%lu\">\n<h2><a href=\"#object_%lu\">", number_of(unit),
                 number_of(unit));
    put_unit_name(unit);
    put("</a></h2>\n");
    put_variables(unit->variant.assoc_scope);
    put_statements(unit->variant.assoc_scope);
    put("</section>\n");
}

// ---- all entries

// The line of the source behind the title of a statement.
void put_source_of_title(std::string_view line) {
    static constexpr std::string_view title = "<A NAME=\"statement_";
    if (!line.starts_with(title)) {
        return;
    }
    const auto number = std::strtoul(line.data() + title.size(), nullptr, 10);
    const source_pos where = entries_of<statement>(kind_statement)[number].source_pos;
    const source_place place = find_source_place(page_header, where.seq);
    if (const std::string *source = line_of_source(place)) {
        std::fprintf(page, "   <span class=\"source\">%u: ", place.line);
        put_text(trimmed(*source));
        put("</span>");
    }
}

void check_temporary_file(bool good) {
    if (!good) {
        std::perror("temporary file");
        std::exit(4);
    }
}

void put_entries(std::FILE *dump) {
    put("<section id=\"entries\">\n<h2>All entries</h2>\n");
    for (std::string line; read_line(dump, line);) {
        put_printed(line);
        put_source_of_title(line);
        put("\n");
    }
    check_temporary_file(!std::ferror(dump));
    put("</section>\n");
}

constexpr char style[] =
    "<style>\n"
    ":root { color-scheme: light dark; --rule: #8884; --soft: #8882; --source: #4a7a3a; }\n"
    "body { margin: 0; font: 15px/1.45 system-ui, sans-serif; display: flex; }\n"
    "nav { position: sticky; top: 0; height: 100vh; overflow: auto; padding: 1em; box-sizing: border-box;\n"
    "      flex: 0 0 16em; border-right: 1px solid var(--rule); }\n"
    "nav ul { list-style: none; padding: 0; }\n"
    "main { padding: 1em 2em; min-width: 0; flex: 1; }\n"
    "section { margin-bottom: 3em; overflow-x: auto; }\n"
    "h1, h2 { line-height: 1.2; }\n"
    "a { text-decoration: none; } a:hover { text-decoration: underline; }\n"
    "table { border-collapse: collapse; margin: 1em 0; }\n"
    "th { text-align: left; font-weight: 600; border-bottom: 1px solid var(--rule); }\n"
    "td, th { padding: .1em .8em .1em 0; vertical-align: top; }\n"
    "td, pre { font-family: ui-monospace, monospace; font-size: 13px; }\n"
    ".statements td { white-space: pre-wrap; } tr:hover td { background: var(--soft); }\n"
    ".number { text-align: right; }\n"
    ".source { color: var(--source); }\n"
    ":target { background: #fe08; }\n"
    "</style>\n";

void put_head(const char *path) {
    put("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>");
    put_text(path);
    put("</title>\n");
    put(style);
    put("</head>\n<body>\n");
}

void put_summary(const char *path) {
    put("<h1>");
    put_text(path);
    put("</h1>\n<p>");
    const char *const source = page_header->primary_source_file->full_name;
    put_text(source ? source : "");
    put(", compiled by version ");
    put_text(page_header->compiler_version ? page_header->compiler_version : "");
    put(" on ");
    put_text(page_header->time_of_compilation ? page_header->time_of_compilation : "");
    put("</p>\n");
}

} // namespace

void print_html_page(loaded_il &file, const char *path, std::FILE *output) {
    page = output;
    page_header = file.header;
    const char *const slash = std::strrchr(path, '/');
    directory.assign(path, slash ? static_cast<std::size_t>(slash + 1 - path) : 0);
    // Before the lists of a module are changed for the printers of units.
    std::FILE *const dump = std::tmpfile();
    check_temporary_file(dump != nullptr);
    dump_stream = dump;
    dump_html = true;
    dump_il_file(file);
    check_temporary_file(std::fflush(dump) == 0 && !std::ferror(dump) && std::fseek(dump, 0, SEEK_SET) == 0);
    add_scope_of_module(file);
    const std::vector<unit_place> units = all_units();
    put_head(path);
    put_index(units);
    put("<main>\n");
    put_summary(path);
    for (const unit_place &u : units) {
        put_unit(u.unit);
    }
    put_entries(dump);
    std::fclose(dump);
    put("</main>\n</body>\n</html>\n");
}

} // namespace zf90
