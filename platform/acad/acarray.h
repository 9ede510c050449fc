// AcArray (acarray.h): the growable array of the ObjectARX API (AcGePoint3dArray,
// AcDbObjectIdArray and the like are instances of it). Indices are int, as in the vendor's API.
#pragma once

#if defined(_WIN32)
#  include <acarray.h>
#else

#include <algorithm>
#include <vector>

template <class T>
class AcArray {
public:
  explicit AcArray(int initPhysicalLength = 0, int initGrowLength = 8) : m_growLength(initGrowLength) {
    if (initPhysicalLength > 0) m_items.reserve(static_cast<size_t>(initPhysicalLength));
  }

  int length() const { return static_cast<int>(m_items.size()); }
  int logicalLength() const { return length(); }
  int physicalLength() const { return static_cast<int>(m_items.capacity()); }
  int growLength() const { return m_growLength; }
  bool isEmpty() const { return m_items.empty(); }
  bool isValid(int i) const { return i >= 0 && i < length(); }

  // Appends and answers the new element's index.
  int append(const T& value) {
    m_items.push_back(value);
    return length() - 1;
  }
  AcArray& append(const AcArray& other) {
    m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end());
    return *this;
  }
  AcArray& insertAt(int index, const T& value) {
    if (index >= 0 && index <= length()) m_items.insert(m_items.begin() + index, value);
    return *this;
  }
  // Kept out of line: GCC 12 at -O2 reports std::vector::erase with a constant index as out of
  // bounds even behind the check once it is inlined into the caller.
  [[gnu::noinline]] AcArray& removeAt(int index) {
    if (isValid(index)) m_items.erase(m_items.begin() + index);
    return *this;
  }
  AcArray& removeLast() {
    if (!m_items.empty()) m_items.pop_back();
    return *this;
  }
  bool remove(const T& value, int start = 0) {
    const int i = find(value, start);
    if (i < 0) return false;
    removeAt(i);
    return true;
  }
  AcArray& removeAll() {
    m_items.clear();
    return *this;
  }
  AcArray& setLogicalLength(int n) {
    m_items.resize(n > 0 ? static_cast<size_t>(n) : 0u);
    return *this;
  }
  AcArray& setPhysicalLength(int n) {
    if (n > length()) m_items.reserve(static_cast<size_t>(n));
    return *this;
  }
  AcArray& setGrowLength(int n) {
    m_growLength = n;
    return *this;
  }
  AcArray& reverse() {
    std::reverse(m_items.begin(), m_items.end());
    return *this;
  }
  AcArray& setAll(const T& value) {
    std::fill(m_items.begin(), m_items.end(), value);
    return *this;
  }

  // Index of the first element equal to value at or after start, or -1.
  int find(const T& value, int start = 0) const {
    for (int i = std::max(start, 0); i < length(); ++i)
      if (m_items[static_cast<size_t>(i)] == value) return i;
    return -1;
  }
  bool contains(const T& value, int start = 0) const { return find(value, start) >= 0; }

  T& operator[](int i) { return m_items[static_cast<size_t>(i)]; }
  const T& operator[](int i) const { return m_items[static_cast<size_t>(i)]; }
  T& at(int i) { return m_items[static_cast<size_t>(i)]; }
  const T& at(int i) const { return m_items[static_cast<size_t>(i)]; }
  T& first() { return m_items.front(); }
  const T& first() const { return m_items.front(); }
  T& last() { return m_items.back(); }
  const T& last() const { return m_items.back(); }
  T* asArrayPtr() { return m_items.data(); }
  const T* asArrayPtr() const { return m_items.data(); }
  T* begin() { return m_items.data(); }
  T* end() { return m_items.data() + m_items.size(); }
  const T* begin() const { return m_items.data(); }
  const T* end() const { return m_items.data() + m_items.size(); }

  bool operator==(const AcArray& other) const { return m_items == other.m_items; }

private:
  std::vector<T> m_items;
  int m_growLength;
};

#endif  // !_WIN32
