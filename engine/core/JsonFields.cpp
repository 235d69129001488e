#include <tarvik/core/JsonFields.hpp>

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace tarvik {

namespace {

std::string_view kindOf(const Json& value) {
    switch (value.type()) {
    case Json::value_t::object:
        return "an object";
    case Json::value_t::array:
        return "a list";
    case Json::value_t::string:
        return "a text";
    case Json::value_t::boolean:
        return "true or false";
    case Json::value_t::null:
        return "null";
    default:
        return "a number";
    }
}

} // namespace

JsonFields::JsonFields(const Json& object, JsonProblem& problem) : JsonFields(object, problem, {}) {
    if (!object_.is_object() && problem_.reason.empty())
        problem_.reason = fmt::format("an object is expected, not {}", kindOf(object_));
}

JsonFields::JsonFields(const Json& object, JsonProblem& problem, std::string prefix)
    : object_(object),
      problem_(problem),
      prefix_(std::move(prefix)) {}

const Json* JsonFields::find(std::string_view field) const {
    const auto found = object_.find(field);
    return found == object_.end() ? nullptr : &*found;
}

std::optional<JsonFields> JsonFields::object(std::string_view field) const {
    const Json* value = find(field);
    if (value == nullptr)
        return std::nullopt;
    if (!value->is_object()) {
        fail(field, "an object", *value);
        return std::nullopt;
    }
    return JsonFields(*value, problem_, fmt::format("{}{}.", prefix_, field));
}

std::string JsonFields::text(std::string_view field) const {
    const Json* value = find(field);
    if (value == nullptr)
        return {};
    if (value->is_string())
        return value->get<std::string>();
    fail(field, "a text", *value);
    return {};
}

std::string JsonFields::requiredText(std::string_view field) const {
    if (find(field) == nullptr && problem_.reason.empty())
        problem_.reason = fmt::format("the field \"{}{}\" is missing", prefix_, field);
    return text(field);
}

std::int64_t JsonFields::integer(std::string_view field) const {
    const Json* value = find(field);
    if (value == nullptr)
        return 0;
    const bool fits =
        !value->is_number_unsigned() || std::in_range<std::int64_t>(value->get<std::uint64_t>());
    if (value->is_number_integer() && fits)
        return value->get<std::int64_t>();
    fail(field, "a whole number of 64 bits", *value);
    return 0;
}

double JsonFields::number(std::string_view field, double least, double most, double absent) const {
    const Json* value = find(field);
    return value == nullptr ? absent : number(field, *value, least, most);
}

double JsonFields::number(std::string_view field, const Json& value, double least, double most) const {
    const double parsed = value.is_number() ? value.get<double>() : std::numeric_limits<double>::quiet_NaN();
    if (parsed >= least && parsed <= most)
        return parsed;
    fail(field, fmt::format("a number from {} to {}", least, most), value);
    return least;
}

void JsonFields::fail(std::string_view field, std::string_view expected, const Json& value) const {
    if (!problem_.reason.empty())
        return;
    const std::string found = value.is_number() ? value.dump() : std::string(kindOf(value));
    problem_.where = fmt::format("{}{}", prefix_, field);
    std::ranges::replace(problem_.where, '.', '/');
    problem_.reason = fmt::format("\"{}{}\" must be {}, not {}", prefix_, field, expected, found);
}

} // namespace tarvik
