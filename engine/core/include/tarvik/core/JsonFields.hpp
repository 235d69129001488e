#pragma once

#include <tarvik/core/Export.hpp>
#include <tarvik/core/JsonFile.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarvik {

// Reads the fields of an object. The first field that is wrong is described in the shared problem, which
// stays empty while all is well; later ones are ignored, so that reading needs no check after every field.
class TARVIK_CORE_API JsonFields final {
public:
    JsonFields(const Json& object, JsonProblem& problem);

    // Null when the field is absent.
    [[nodiscard]] const Json* find(std::string_view field) const;

    // The fields of an object within this one; their names are then "light.kind" in the problem.
    [[nodiscard]] std::optional<JsonFields> object(std::string_view field) const;

    [[nodiscard]] std::string text(std::string_view field) const; // empty when absent
    [[nodiscard]] std::string requiredText(std::string_view field) const;
    [[nodiscard]] std::int64_t integer(std::string_view field) const; // 0 when absent
    [[nodiscard]] double number(std::string_view field, double least, double most, double absent) const;

    // The same for a value found otherwise, such as an element of the field's list.
    [[nodiscard]] double number(std::string_view field, const Json& value, double least, double most) const;

    // "<field> must be <expected>, not <what the value is>".
    void fail(std::string_view field, std::string_view expected, const Json& value) const;

private:
    JsonFields(const Json& object, JsonProblem& problem, std::string prefix);

    const Json& object_;
    JsonProblem& problem_;
    std::string prefix_;
};

} // namespace tarvik
