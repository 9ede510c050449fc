// Reading a stored object written as an identifier-object pair: a JSON array of exactly two
// entries, the identifier text and then the object's own JSON value.
//
// The JSON value type is a parameter so that identifiers need no JSON library of their own; it
// needs what jsoncpp's Json::Value offers: isArray(), size(), operator[](unsigned), isNull(),
// isString() and asString() returning UTF-8 std::string or std::wstring.
#pragma once

#include <string>

#include "module/ids/KdId.h"

// An object that can take its state from its JSON value.
template <class JsonValue>
class IKdIdObject {
public:
  virtual ~IKdIdObject() = default;
  virtual void ReadJson(const JsonValue& value) = 0;
};

// The owner of stored objects, which finds them by identifier.
template <class JsonValue>
class IKdIdRegistry {
public:
  virtual ~IKdIdRegistry() = default;
  // The object with that identifier, owned by the registry; null when there is none.
  virtual IKdIdObject<JsonValue>* FindById(const CKdId& id) = 0;
};

namespace kdid {

inline std::wstring WideFromJsonText(const std::string& utf8) { return WideFromUtf8(utf8); }
inline std::wstring WideFromJsonText(const std::wstring& wide) { return wide; }

}  // namespace kdid

// When `pair` is an array of exactly two entries whose first is a (non-null) identifier text,
// asks the registry for the object with that identifier and, when there is one, lets it read
// itself from the second entry. Returns the object that read itself, otherwise null.
template <class JsonValue>
IKdIdObject<JsonValue>* ReadIdObjectPair(const JsonValue& pair, IKdIdRegistry<JsonValue>& registry) {
  if (!pair.isArray() || pair.size() != 2u) return nullptr;
  const JsonValue& first = pair[0u];
  // A text is required: asString() of an object or array would throw.
  if (first.isNull() || !first.isString()) return nullptr;
  const CKdId id(kdid::WideFromJsonText(first.asString()));
  IKdIdObject<JsonValue>* object = registry.FindById(id);
  if (object != nullptr) object->ReadJson(pair[1u]);
  return object;
}
