#include "BehaviourName.hpp"

#include <tarvik/project/Project.hpp>

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <string_view>

namespace tarvik::editor {
namespace {

struct NameText {
    Q_DECLARE_TR_FUNCTIONS(BehaviourName)
};

constexpr std::array<std::string_view, 92> kKeywords{
    "alignas",     "alignof",  "and",        "and_eq",    "asm",       "auto",         "bitand",
    "bitor",       "bool",     "break",      "case",      "catch",     "char",         "char8_t",
    "char16_t",    "char32_t", "class",      "co_await",  "co_return", "co_yield",     "compl",
    "concept",     "const",    "const_cast", "consteval", "constexpr", "constinit",    "continue",
    "decltype",    "default",  "delete",     "do",        "double",    "dynamic_cast", "else",
    "enum",        "explicit", "export",     "extern",    "false",     "float",        "for",
    "friend",      "goto",     "if",         "inline",    "int",       "long",         "mutable",
    "namespace",   "new",      "noexcept",   "not",       "not_eq",    "nullptr",      "operator",
    "or",          "or_eq",    "private",    "protected", "public",    "register",     "reinterpret_cast",
    "requires",    "return",   "short",      "signed",    "sizeof",    "static",       "static_assert",
    "static_cast", "struct",   "switch",     "template",  "this",      "thread_local", "throw",
    "true",        "try",      "typedef",    "typeid",    "typename",  "union",        "unsigned",
    "using",       "virtual",  "void",       "volatile",  "wchar_t",   "while",        "xor",
    "xor_eq",
};

// What a new behaviour's source uses: a class of that name would hide it.
constexpr std::array<std::string_view, 13> kUsed{
    "Behaviour", "Vec3",    "TARVIK_BEHAVIOUR", "std",         "tarvik",
    "start",     "update",  "position",         "setPosition", "name",
    "log",       "origin_", "elapsed_",
};

} // namespace

QString problemWithBehaviourName(const QString& name) {
    static const QRegularExpression identifier("^[A-Za-z_][A-Za-z0-9_]*\\z");
    if (!identifier.match(name).hasMatch()) {
        return NameText::tr(
            "A class name has letters of a to z, digits and underscores, and does not start with "
            "a digit.");
    }
    const std::string plain = name.toStdString();
    if (std::ranges::find(kKeywords, plain) != kKeywords.end())
        return NameText::tr("\"%1\" is a word of the C++ language.").arg(name);
    if (std::ranges::find(kUsed, plain) != kUsed.end())
        return NameText::tr("\"%1\" has a meaning in every behaviour.").arg(name);
    if (!Project::isValidName(plain)) // the class is a file as well
        return NameText::tr("A class name has 64 characters at most, and is none that Windows reserves.");
    return {};
}

} // namespace tarvik::editor
