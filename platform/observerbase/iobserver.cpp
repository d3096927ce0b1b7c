#include <observerbase/iobserver.h>

IObserver::~IObserver() = default;
