#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace voltaro {

class PropertyValue;

// A registry entry's properties: text keys to values that keep signed and unsigned integers,
// floating point, booleans, text and nested dictionaries apart, as the hardware reported them.
class PropertyDictionary {
  public:
    struct Entry;

    PropertyDictionary();
    PropertyDictionary(std::initializer_list<Entry> entries);
    PropertyDictionary(const PropertyDictionary&);
    PropertyDictionary(PropertyDictionary&&) noexcept;
    PropertyDictionary& operator=(const PropertyDictionary&);
    PropertyDictionary& operator=(PropertyDictionary&&) noexcept;
    ~PropertyDictionary();

    // The value under the key, or nullptr when the key is missing.
    const PropertyValue* find(std::string_view key) const;
    bool contains(std::string_view key) const { return find(key) != nullptr; }
    // The nested dictionary under the key, or nullptr when missing or not a dictionary.
    const PropertyDictionary* dictionary(std::string_view key) const;

    // Adds the entry, or replaces the value of an existing key.
    void set(std::string key, PropertyValue value);
    bool empty() const;
    std::size_t size() const;
    const std::vector<Entry>& entries() const { return entries_; }

    friend bool operator==(const PropertyDictionary&, const PropertyDictionary&);

  private:
    std::vector<Entry> entries_;  // insertion order; registry entries hold a few dozen keys
};

class PropertyValue {
  public:
    using Storage =
        std::variant<std::int64_t, std::uint64_t, double, bool, std::string, PropertyDictionary>;

    template <std::signed_integral T>
    PropertyValue(T value) : storage_(static_cast<std::int64_t>(value)) {}
    template <std::unsigned_integral T>
    requires(!std::same_as<T, bool>) PropertyValue(T value)
        : storage_(static_cast<std::uint64_t>(value)) {}
    PropertyValue(double value) : storage_(value) {}
    PropertyValue(bool value) : storage_(value) {}
    PropertyValue(std::string value) : storage_(std::move(value)) {}
    PropertyValue(const char* value) : storage_(std::string(value)) {}
    PropertyValue(PropertyDictionary value) : storage_(std::move(value)) {}

    // Numbers and booleans count as numbers; text and dictionaries do not.
    bool isNumber() const { return !holds<std::string>() && !holds<PropertyDictionary>(); }

    template <typename T>
    bool holds() const {
        return std::holds_alternative<T>(storage_);
    }
    template <typename T>
    const T* getIf() const {
        return std::get_if<T>(&storage_);
    }
    const Storage& storage() const { return storage_; }

    friend bool operator==(const PropertyValue&, const PropertyValue&) = default;

  private:
    Storage storage_;
};

struct PropertyDictionary::Entry {
    std::string key;
    PropertyValue value;
    friend bool operator==(const Entry&, const Entry&) = default;
};

// Defined once Entry is complete: Clang instantiates the vector's constexpr members on sight.
inline bool PropertyDictionary::empty() const {
    return entries_.empty();
}
inline std::size_t PropertyDictionary::size() const {
    return entries_.size();
}

}  // namespace voltaro
