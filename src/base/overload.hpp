// One callable made of several, for std::visit.
#pragma once

namespace lotmere {

template <class... Cases>
struct Overload : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overload(Cases...) -> Overload<Cases...>;

}  // namespace lotmere
