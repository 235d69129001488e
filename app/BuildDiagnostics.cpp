#include <tarvik/app/BuildDiagnostics.hpp>

#include <QSet>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace tarvik::app {

static std::size_t qHash(const BuildDiagnostic& diagnostic, std::size_t seed) {
    return qHashMulti(seed, diagnostic.file, diagnostic.line, diagnostic.column, diagnostic.text);
}

namespace {

using Severity = BuildDiagnostic::Severity;

struct Location {
    QStringView file;
    int line = 0;
    int column = 0;
};

struct Word {
    QStringView text;
    Severity severity;
};

// Of words that begin alike, the longer one comes first.
const std::array kWords{
    Word{u"fatal error", Severity::Error},
    Word{u"fatal", Severity::Error},
    Word{u"error", Severity::Error},
    Word{u"warning", Severity::Warning},
    Word{u"note", Severity::Note},
    Word{u"remark", Severity::Note},
    Word{u"message", Severity::Note},
    Word{u"internal compiler error", Severity::Error},
    Word{u"sorry, unimplemented", Severity::Error},
    Word{u"Command line error", Severity::Error},
    Word{u"Command line warning", Severity::Warning},
};

const std::array<QStringView, 3> kLinkerComplaints{
    u": undefined reference to ",
    u": multiple definition of ",
    u": relocation truncated to fit",
};

// That a link or a command failed says nothing beside the reason, and all when there is none.
const std::array<QStringView, 5> kSummaries{
    u"ld returned ", u"linker command failed", u"final link failed", u"LNK1120", u"U1077",
};

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool endsWithDigit(QStringView text) {
    return !text.isEmpty() && isDigit(text.back());
}

bool isIndented(QStringView line) {
    return line.startsWith(u' ') || line.startsWith(u'\t');
}

// Cuts a number off the end; nothing when there is none.
std::optional<int> takeNumber(QStringView& text) {
    qsizetype begin = text.size();
    while (begin > 0 && isDigit(text[begin - 1]))
        --begin;
    bool ok = false;
    const int number = text.sliced(begin).toInt(&ok);
    if (!ok)
        return std::nullopt;
    text.truncate(begin);
    return number;
}

// "FILE:LINE:COLUMN" and "FILE:LINE".
std::optional<Location> gnuLocation(QStringView text) {
    const auto last = takeNumber(text);
    if (!last || !text.endsWith(u':'))
        return std::nullopt;
    text.chop(1);
    const QStringView shorter = text;
    if (const auto line = takeNumber(text); line && text.size() > 1 && text.endsWith(u':'))
        return Location{text.chopped(1), *line, *last};
    return shorter.isEmpty() ? std::nullopt : std::optional(Location{shorter, *last, 0});
}

// "FILE(LINE)", "FILE(LINE,COLUMN)" and "FILE(LINE,COLUMN,LINE,COLUMN)".
std::optional<Location> visualLocation(QStringView text) {
    if (!text.endsWith(u')'))
        return std::nullopt;
    text.chop(1);
    qsizetype begin = text.size();
    while (begin > 0 && (isDigit(text[begin - 1]) || text[begin - 1] == u','))
        --begin;
    if (begin < 2 || text[begin - 1] != u'(')
        return std::nullopt;
    const auto numbers = text.sliced(begin).split(u',');
    return Location{text.first(begin - 1), numbers[0].toInt(), numbers.value(1).toInt()};
}

// Of a diagnostic of severity, text starts at begin of the line; what comes before end says where it is.
struct Marker {
    Severity severity;
    qsizetype end;
    qsizetype begin;
};

// Whether at says "error:", "fatal error C1083:" or the like; it begins a part of line.
std::optional<Marker> markerAt(QStringView line, qsizetype end, qsizetype at) {
    const QStringView rest = line.sliced(at);
    for (const auto& [text, severity] : kWords) {
        if (!rest.startsWith(text, Qt::CaseInsensitive))
            continue;
        const QStringView after = rest.sliced(text.size());
        for (const QStringView colon : {QStringView(u":"), QStringView(u" :")}) {
            if (after.startsWith(colon))
                return Marker{severity, end, at + text.size() + colon.size()};
        }
        // Visual C++ names its diagnostics by letters and a number.
        constexpr qsizetype kLongestCode = 12;
        const QStringView code = after.first(std::min(after.size(), kLongestCode));
        const qsizetype colon = code.indexOf(u':');
        if (code.startsWith(u' ') && colon > 2 && endsWithDigit(code.first(colon).trimmed()))
            return Marker{severity, end, at + text.size() + 1};
    }
    return std::nullopt;
}

std::optional<Marker> nextMarker(QStringView line, qsizetype from) {
    for (qsizetype colon = line.indexOf(u':', from); colon >= 0; colon = line.indexOf(u':', colon + 1)) {
        if (colon + 1 < line.size() && line[colon + 1] == u' ') {
            if (const auto marker = markerAt(line, colon, colon + 2))
                return marker;
        }
    }
    return std::nullopt;
}

QStringView lastComponent(QStringView path) {
    return path.sliced(std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1);
}

// "x86_64-w64-mingw32-ld.exe" is "ld".
QStringView linkerName(QStringView program) {
    QStringView name = lastComponent(program);
    if (name.endsWith(u".exe"))
        name.chop(4);
    if (name == u"lld-link")
        return name;
    name = name.sliced(name.lastIndexOf(u'-') + 1);
    const bool known =
        name == u"ld" || name == u"ld.bfd" || name == u"ld.gold" || name == u"ld.lld" || name == u"mold";
    return known ? name : QStringView();
}

// The line of spaces and arrows under a piece of source.
bool isPointer(QStringView line) {
    bool points = false;
    for (const QChar c : line) {
        points = points || c == u'^';
        if (c != u' ' && c != u'\t' && c != u'^' && c != u'~')
            return false;
    }
    return points;
}

// A piece of source as GCC shows it: "   12 | text", "      |  ^~~", "  +++ |+text".
bool isExcerpt(QStringView line) {
    return isIndented(line) && line.contains(u" |");
}

QString withSlashes(QStringView file) {
    return file.toString().replace(u'\\', u'/');
}

QString withoutEscapes(QStringView text) {
    constexpr QChar kEscape(0x1b);
    QString plain;
    plain.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != kEscape) {
            plain += text[i];
            continue;
        }
        const QChar kind = ++i < text.size() ? text[i] : QChar();
        if (kind == u'[') { // up to a letter
            do
                ++i;
            while (i < text.size() && text[i] >= u' ' && text[i] < u'@');
            i -= i < text.size() && text[i] < u' ' ? 1 : 0;
        } else if (kind == u']') { // a link, up to a bell or an escape of its own
            do
                ++i;
            while (i < text.size() && text[i] != QChar(7) && text[i] != kEscape && text[i] != u'\n');
            i -= i < text.size() && text[i] != QChar(7) ? 1 : 0;
        }
    }
    return plain;
}

class Parser final {
public:
    void take(QStringView line) {
        if (continueCMake(line))
            return;
        const bool added = std::exchange(added_, false);
        if (line.isEmpty() || line.startsWith(u"-- "))
            return;
        if (added && isPointer(line)) {
            found_.removeLast(); // it was a piece of source that only looked like a diagnostic
            return;
        }
        if (line.startsWith(u"CMake ") && beginCMake(line.sliced(6)))
            return;
        if (added && line.startsWith(u">>> ")) {
            locate(line);
            return;
        }
        const qsizetype colon = line.indexOf(u": ");
        const QStringView linker = colon > 0 ? linkerName(line.first(colon)) : QStringView();
        const QStringView rest = linker.isEmpty() ? line : line.sliced(colon + 2);
        if (takeMarked(rest, linker) || takeLinkerComplaint(rest))
            return;
        if (!linker.isEmpty() && !rest.endsWith(u':') && !rest.startsWith(u"skipping "))
            add(linker == u"ld.gold" ? Severity::Note : Severity::Error, {}, rest.toString());
        else if (const qsizetype stars = line.indexOf(u": *** No "); stars > 0)
            add(Severity::Error, {}, line.sliced(stars + 6).toString());
    }

    QList<BuildDiagnostic> finish() {
        const auto isError = [](const BuildDiagnostic& found) {
            return found.severity == Severity::Error;
        };
        if (summary_ && std::ranges::none_of(found_, isError))
            found_ += *std::move(summary_);
        QSet<BuildDiagnostic> seen;
        QList<BuildDiagnostic> list;
        for (const BuildDiagnostic& diagnostic : std::as_const(found_)) {
            const qsizetype before = seen.size();
            seen += diagnostic;
            if (seen.size() > before)
                list += diagnostic;
        }
        return list;
    }

private:
    void add(Severity severity, Location location, const QString& text) {
        if (location.file.startsWith(u'<')) // such as <command-line>
            location = {};
        const BuildDiagnostic diagnostic{severity, withSlashes(location.file), location.line, location.column,
                                         text.trimmed()};
        const auto begins = [&](QStringView start) {
            return diagnostic.text.startsWith(start);
        };
        if (std::ranges::any_of(kSummaries, begins)) {
            summary_ = diagnostic;
            return;
        }
        found_ += diagnostic;
        added_ = true;
    }

    // "FILE:LINE:COLUMN: error: TEXT", "FILE(LINE): error C2065: TEXT", "TOOL: error: TEXT".
    bool takeMarked(QStringView line, QStringView linker) {
        auto marker = nextMarker(line, 0);
        if (!linker.isEmpty() || line.startsWith(u"Error: ")) {
            if (const auto first = markerAt(line, 0, 0)) {
                add(first->severity, {}, line.sliced(first->begin).toString());
                return true;
            }
        }
        if (!marker || isExcerpt(line))
            return false;
        if (!isIndented(line) && takeToolComplaint(line, *marker, linker))
            return true;
        for (; marker; marker = nextMarker(line, marker->end + 1)) {
            const QStringView place = line.first(marker->end).trimmed();
            auto location = visualLocation(place);
            if (location)
                location->file = withoutProjectNumber(location->file);
            else if (!isIndented(line))
                location = gnuLocation(place);
            if (location) {
                add(marker->severity, *location, visualText(line.sliced(marker->begin)));
                return true;
            }
        }
        return false;
    }

    // A program's name, or an object file's, stands where a source file's would.
    bool takeToolComplaint(QStringView line, const Marker& marker, QStringView linker) {
        const QStringView place = line.first(marker.end).trimmed();
        if (gnuLocation(place) || visualLocation(place))
            return false;
        const QStringView tool = lastComponent(place);
        constexpr qsizetype kLongestName = 255;
        const auto isOdd = [](QChar c) {
            return c.isSpace() || c == u'"' || c == u'\'' || c == u'=';
        };
        if (tool.isEmpty() || tool.size() > kLongestName || std::ranges::any_of(tool, isOdd))
            return false;
        QString text = visualText(line.sliced(marker.begin));
        const bool isFile = !linker.isEmpty() || tool.endsWith(u".obj") || tool.endsWith(u".lib");
        if (isFile)
            text = tool.toString() + ": " + text;
        add(marker.severity, {}, text);
        return true;
    }

    // MSBuild numbers the lines of projects that it builds side by side: "2>C:\file.cpp".
    static QStringView withoutProjectNumber(QStringView file) {
        file = file.trimmed();
        qsizetype digits = 0;
        while (digits < file.size() && isDigit(file[digits]))
            ++digits;
        return digits > 0 && file.sliced(digits).startsWith(u'>') ? file.sliced(digits + 1) : file;
    }

    // Without the project that MSBuild puts at the end, and with "C2065 :" as "C2065:".
    static QString visualText(QStringView text) {
        text = text.trimmed();
        if (text.endsWith(u"proj]")) {
            if (const qsizetype project = text.lastIndexOf(u" ["); project > 0)
                text = text.first(project);
        }
        QString plain = text.toString();
        const qsizetype colon = plain.indexOf(u':');
        if (colon > 1 && plain[colon - 1] == u' ' && isDigit(plain[colon - 2]) &&
            plain.indexOf(u' ') == colon - 1)
            plain.remove(colon - 1, 1);
        return plain;
    }

    // "FILE:LINE: undefined reference to", "FILE:(SECTION): ...", "OBJECT:FILE:(SECTION): ...".
    bool takeLinkerComplaint(QStringView line) {
        if (isIndented(line))
            return false;
        for (const QStringView complaint : kLinkerComplaints) {
            const qsizetype at = line.indexOf(complaint);
            if (at <= 0)
                continue;
            QStringView place = line.first(at);
            if (place.endsWith(u')'))
                place.truncate(std::max<qsizetype>(place.lastIndexOf(u":("), 0));
            Location location{place};
            if (const auto found = gnuLocation(place))
                location = *found;
            if (const qsizetype object = location.file.lastIndexOf(u".o:"); object >= 0)
                location.file = location.file.sliced(object + 3);
            add(Severity::Error, location, line.sliced(at + 2).toString());
            return true;
        }
        return false;
    }

    // What lld tells after an error: ">>> referenced by NAME:LINE (FILE:LINE)" or ">>> defined at ...".
    void locate(QStringView line) {
        added_ = true; // more such lines may follow
        if (!found_.last().file.isEmpty())
            return;
        if (line.endsWith(u')')) {
            if (const qsizetype file = line.indexOf(u" ("); file > 0)
                line = line.sliced(file + 2).chopped(1);
        } else {
            for (const QStringView start :
                 {QStringView(u">>> referenced by "), QStringView(u">>> defined at ")})
                line = line.startsWith(start) ? line.sliced(start.size()) : line;
        }
        if (const auto location = gnuLocation(line)) {
            found_.last().file = withSlashes(location->file);
            found_.last().line = location->line;
        }
    }

    // "Error at FILE:LINE (COMMAND):", "Warning (dev) in FILE:", "Error: TEXT"; the text follows, indented.
    bool beginCMake(QStringView line) {
        Severity severity = Severity::Error;
        qsizetype end = 0;
        for (const auto& [kind, of] :
             {Word{u"Error", Severity::Error}, Word{u"Internal Error", Severity::Error},
              Word{u"Deprecation Error", Severity::Error}, Word{u"Warning", Severity::Warning},
              Word{u"Deprecation Warning", Severity::Warning}}) {
            if (line.startsWith(kind)) {
                severity = of;
                end = kind.size();
            }
        }
        if (end == 0)
            return false;
        line = line.sliced(end);
        if (line.startsWith(u" (dev)"))
            line = line.sliced(6);
        if (line.startsWith(u':')) {
            add(severity, {}, line.sliced(1).toString());
        } else {
            if (!line.startsWith(u" at ") && !line.startsWith(u" in "))
                return false;
            line = line.sliced(4).trimmed();
            if (line.endsWith(u':'))
                line.chop(1);
            if (line.endsWith(u')'))
                line.truncate(std::max<qsizetype>(line.lastIndexOf(u" ("), 0));
            add(severity, gnuLocation(line).value_or(Location{line}), {});
        }
        inCMake_ = added_;
        newParagraph_ = false;
        return true;
    }

    // CMake wraps its paragraphs and indents deeper what it does not wrap.
    bool continueCMake(QStringView line) {
        if (!inCMake_)
            return false;
        if (line.trimmed().isEmpty()) {
            newParagraph_ = true;
            return true;
        }
        if (!line.startsWith(u"  ")) {
            inCMake_ = false;
            added_ = false;
            return false;
        }
        line = line.sliced(2);
        QString& text = found_.last().text;
        if (!text.isEmpty())
            text += newParagraph_ || line.startsWith(u' ') ? u'\n' : u' ';
        text += line;
        newParagraph_ = line.startsWith(u' ');
        return true;
    }

    QList<BuildDiagnostic> found_;
    std::optional<BuildDiagnostic> summary_;
    bool added_ = false; // by the line before
    bool inCMake_ = false;
    bool newParagraph_ = false;
};

} // namespace

BuildDiagnostics::BuildDiagnostics(QStringView output) {
    QString plain;
    if (output.contains(QChar(0x1b))) {
        plain = withoutEscapes(output);
        output = plain;
    }
    Parser parser;
    for (QStringView line : output.tokenize(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        // What a terminal would show of a progress line.
        parser.take(line.sliced(line.lastIndexOf(u'\r') + 1));
    }
    list_ = parser.finish();
}

} // namespace tarvik::app
