#include <valuecore/value.h>

template class Value<QString>;
template class Value<int>;
template class Value<bool>;
template class Value<double>;
template class Value<qint64>;
