// CGrElementFactory: a new, default-constructed element for a type code.
#pragma once

class CGrElement;

class CGrElementFactory {
public:
  // The kinds of codes 1-9, 15, 16 (an arc) and 105, owned by the caller; null for every other
  // code, 10, 11, 12 and 99 included.
  static CGrElement* Make(int typeCode);
};
