#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "ComObject.h"
#include "EventThread.h"
#include "base/WindowsHandles.h"

namespace brisk::standin {

// The handlers of one event of one notification, each under its token. Any thread.
template <class Handler>
class EventHandlers {
public:
    // REGDB_E_IIDNOTREG for a handler that is not agile: the service could not call it from another thread, since
    // nothing marshals it.
    HRESULT add(Handler* handler, EventRegistrationToken* token) {
        if (!handler || !token) {
            return E_POINTER;
        }
        ComReference<IUnknown> agile;
        if (FAILED(handler->QueryInterface(__uuidof(IAgileObject), agile.receiveVoid()))) {
            return REGDB_E_IIDNOTREG;
        }
        static std::atomic<INT64> lastToken = 0;
        token->value = ++lastToken;
        handler->AddRef();
        std::lock_guard lock(mutex);
        handlers.emplace(token->value, std::make_shared<ComReference<Handler>>(handler));
        return S_OK;
    }

    // A token that is not known is none of anyone's business, as with the real service.
    HRESULT remove(EventRegistrationToken token) {
        Attached removed;
        std::lock_guard lock(mutex);
        if (const auto found = handlers.find(token.value); found != handlers.end()) {
            removed.swap(found->second);
            handlers.erase(found);
        }
        return S_OK;
    }

    // The delivery of an event to the handlers that are attached now; keeps them and what it is given alive.
    std::function<EventResult()> delivery(const std::shared_ptr<ComReference<abi::IToastNotification>>& sender,
                                          const std::shared_ptr<ComReference<typename Handler::Arguments>>& arguments) {
        std::vector<Attached> attached;
        std::lock_guard lock(mutex);
        for (const auto& [token, handler] : handlers) {
            attached.push_back(handler);
        }
        return [sender, arguments, attached] {
            EventResult result;
            for (const Attached& handler : attached) {
                const HRESULT answered = (*handler)->Invoke(sender->get(), arguments->get());
                ++result.handlers;
                result.result = FAILED(result.result) ? result.result : answered;
            }
            return result;
        };
    }

private:
    using Attached = std::shared_ptr<ComReference<Handler>>;

    std::mutex mutex;
    std::map<INT64, Attached> handlers;
};

} // namespace brisk::standin
