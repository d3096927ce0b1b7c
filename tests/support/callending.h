#pragma once

#include "callerthread.h"

#include <zelkoidl/recorderservice.hh>

#include <QString>

namespace ZelkoTest {

/// What a call of the recorder's service ends with, made by `onCallerThread`: "done", the code of the contract's
/// exception in words, or the name of an exception of the ORB.
template <typename Call>
QString endingOf(Call call)
{
    const auto word = [](auto code, std::initializer_list<const char*> words) {
        return QString::fromLatin1(words.begin()[code]);
    };
    return onCallerThread([&]() -> QString {
        try {
            call();
            return QStringLiteral("done");
        } catch (const QD_ZLK::IF_ZLK_c_ZLK::exZLK& refusal) {
            return word(refusal.code, {"failed", "unknown device", "unknown record", "not permitted"});
        } catch (const QD_ZLK::IF_ZLK_c_Chan::exChan& refusal) {
            return word(refusal.code, {"failed", "removed", "busy", "not recording", "no device", "no space"});
        } catch (const QD_ZLK::exGen& refusal) {
            return word(refusal.code, {"internal", "bad parameter", "not permitted", "no resources", "in use"});
        } catch (const CORBA::Exception& exception) {
            return QString::fromLatin1(exception._name());
        }
    });
}

} // namespace ZelkoTest
