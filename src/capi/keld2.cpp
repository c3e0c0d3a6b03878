#include "capi/keld2.h"

#include <algorithm>
#include <limits>
#include <type_traits>

#include "capi/session.h"
#include "platform/numbers.h"

using keld2::capi::StatusError;

namespace {

using keld2::AnyVariable;
using keld2::ElementType;
using keld2::SharedTexts;
using keld2::SharedVariable;

static_assert(static_cast<int>(ElementType::string) == KELD2_TEXT);

template <typename Variable>
constexpr bool istexts = std::is_same_v<Variable, SharedTexts>;
template <typename Variable>
constexpr bool isreal = std::is_same_v<Variable, SharedVariable<double>>;
template <typename Variable>
constexpr bool isinteger = !istexts<Variable> && !isreal<Variable>;

template <typename T>
void need(T* pointer, const char* argument) {
    if (pointer == nullptr) throw StatusError(KELD2_EARGUMENT, std::string(argument) + " is NULL");
}

const keld2::BlockRow& rowof(const char* name) {
    need(name, "name");
    for (const keld2::BlockRow& row : keld2::blocktable)
        if (row.name == name) return row;
    throw StatusError(KELD2_ENAME, std::string(name) + " is no shared variable");
}

AnyVariable variableof(keld2_session& session, const char* name) {
    return session.variables().variable(rowof(name).name);
}

[[noreturn]] void wrongtype(const char* name, const char* asked) {
    throw StatusError(KELD2_ETYPE, std::string(name) + " has no elements of type " + asked);
}

template <typename Variable>
void checkrange(const Variable& variable, std::int64_t index, std::size_t count = 1) {
    const bool inside = index >= 0 && index <= variable.size() &&
                        count <= static_cast<std::size_t>(variable.size() - index);
    if (!inside)
        throw StatusError(KELD2_EINDEX, std::string(variable.name()) + ": " +
                                            std::to_string(count) + " elements from " +
                                            std::to_string(index) + ", there are " +
                                            std::to_string(variable.size()));
}

template <typename T>
void store(SharedVariable<T>& variable, std::int64_t index, std::int64_t value) {
    constexpr bool flag = std::is_same_v<T, keld2::Flag>;
    using Number =
        std::conditional_t<flag, std::type_identity<std::int16_t>, std::type_identity<T>>;
    using Limits = std::numeric_limits<typename Number::type>;
    const std::int64_t least = flag ? -1 : Limits::min(), most = flag ? 0 : Limits::max();
    if (value < least || value > most)
        throw StatusError(KELD2_EARGUMENT, std::string(variable.name()) + ": " +
                                               std::to_string(value) + " is not within " +
                                               std::to_string(least) + " to " +
                                               std::to_string(most));
    variable.release(index, static_cast<T>(value));
}

// Finds the variable and, when its type fits by kind, gives the cell's variable to use.
template <typename Fits, typename Use>
void withcells(keld2_session& session, const char* name, std::int64_t index, std::size_t count,
               const char* asked, Fits, Use use) {
    const auto visit = [&](auto* variable) {
        if constexpr (Fits{}.template operator()<std::remove_pointer_t<decltype(variable)>>()) {
            checkrange(*variable, index, count);
            use(*variable);
        } else {
            wrongtype(name, asked);
        }
    };
    std::visit(visit, variableof(session, name));
}

constexpr auto integers = []<typename V>() { return isinteger<V>; };
constexpr auto reals = []<typename V>() { return isreal<V>; };
constexpr auto texts = []<typename V>() { return istexts<V>; };
constexpr auto bytecells = []<typename V>() {
    return std::is_same_v<V, SharedVariable<std::uint8_t>>;
};

template <typename Work>
int call(keld2_session* session, Work work) noexcept {
    return session == nullptr ? int{KELD2_EARGUMENT} : session->call(work);
}

template <typename Method>
int method(keld2_session* session, Method run) noexcept {
    return session == nullptr ? int{KELD2_EARGUMENT} : session->method(run);
}

}  // namespace

extern "C" {

const char* keld2_version(void) { return KELD2_VERSION; }

int keld2_create(const keld2_options* options, const keld2_callbacks* callbacks,
                 keld2_session** session) {
    if (callbacks == nullptr || session == nullptr) return KELD2_EARGUMENT;
    constexpr keld2_options standard{
        .size = sizeof(keld2_options), .folder = nullptr, .buflength = 0, .instance = 0};
    if (options == nullptr) options = &standard;
    if (options->size != sizeof(keld2_options)) return KELD2_EARGUMENT;
    try {
        *session = std::make_unique<keld2_session>(*options, *callbacks).release();
        return KELD2_OK;
    } catch (const StatusError& error) {
        return error.status();
    } catch (const std::exception&) {
        return KELD2_EFAULT;
    }
}

int keld2_destroy(keld2_session* session) {
    if (session == nullptr) return KELD2_OK;
    const int status = session->call([](keld2_session& s) { s.checkidle(); });
    if (status == KELD2_OK) std::unique_ptr<keld2_session>(session).reset();
    return status;
}

const char* keld2_lasterror(const keld2_session* session) {
    return session == nullptr ? "" : session->lasterror().c_str();
}

int keld2_runKeld2Prg(keld2_session* session, int usbenable) {
    return method(session,
                  [usbenable](keld2::ClsKELD2& plugin) { plugin.runKeld2Prg(usbenable != 0); });
}

int keld2_editfigkeld2(keld2_session* session) {
    return method(session, [](keld2::ClsKELD2& plugin) { plugin.editfigkeld2(); });
}

int keld2_usercode(keld2_session* session) {
    return method(session, [](keld2::ClsKELD2& plugin) { plugin.usercode(); });
}

int keld2_bufcomkeld2(keld2_session* session, int16_t num) {
    return method(session, [num](keld2::ClsKELD2& plugin) { plugin.bufcomkeld2(num); });
}

int keld2_freesharebufferkeld2(keld2_session* session) {
    return method(session, [](keld2::ClsKELD2& plugin) { plugin.freesharebufferkeld2(); });
}

int keld2_keld2warn(keld2_session* session, uint8_t no) {
    return method(session, [no](keld2::ClsKELD2& plugin) { plugin.keld2warn(no); });
}

int keld2_sinitkeld2(keld2_session* session) {
    return method(session, [](keld2::ClsKELD2& plugin) { plugin.sinitkeld2(); });
}

int keld2_resize(keld2_session* session, int32_t buflength) {
    return call(session, [buflength](keld2_session& s) { s.resize(buflength); });
}

int keld2_stop(keld2_session* session) {
    if (session == nullptr) return KELD2_EARGUMENT;
    session->stop();
    return KELD2_OK;
}

int keld2_finishread(keld2_session* session, int state) {
    if (session == nullptr || (state != KELD2_READ_DONE && state != KELD2_READ_FAILED))
        return KELD2_EARGUMENT;
    session->finishread(state);
    return KELD2_OK;
}

int keld2_fail(keld2_session* session, const char* why) {
    return call(session, [why](keld2_session& s) {
        need(why, "why");
        s.callbacks().failure = *why != 0 ? why : "a callback has failed";
    });
}

int keld2_describe(keld2_session* session, const char* name, int* type, int64_t* count) {
    return call(session, [=](keld2_session& s) {
        const auto size = [](auto* variable) { return variable->size(); };
        const std::int64_t elements = std::visit(size, variableof(s, name));
        if (type != nullptr) *type = static_cast<int>(rowof(name).type);
        if (count != nullptr) *count = elements;
    });
}

int keld2_getint(keld2_session* session, const char* name, int64_t index, int64_t* value) {
    return call(session, [=](keld2_session& s) {
        need(value, "value");
        withcells(s, name, index, 1, "integer", integers, [=](auto& variable) {
            *value = static_cast<std::int64_t>(variable.acquire(index));
        });
    });
}

int keld2_setint(keld2_session* session, const char* name, int64_t index, int64_t value) {
    return call(session, [=](keld2_session& s) {
        withcells(s, name, index, 1, "integer", integers,
                  [=](auto& variable) { store(variable, index, value); });
    });
}

int keld2_getreal(keld2_session* session, const char* name, int64_t index, double* value) {
    return call(session, [=](keld2_session& s) {
        need(value, "value");
        withcells(s, name, index, 1, "real", reals,
                  [=](auto& variable) { *value = variable[index]; });
    });
}

int keld2_setreal(keld2_session* session, const char* name, int64_t index, double value) {
    return call(session, [=](keld2_session& s) {
        withcells(s, name, index, 1, "real", reals,
                  [=](auto& variable) { variable[index] = value; });
    });
}

int keld2_gettext(keld2_session* session, const char* name, int64_t index, char* buffer,
                  size_t size, size_t* length) {
    return call(session, [=](keld2_session& s) {
        if (size != 0) need(buffer, "buffer");
        withcells(s, name, index, 1, "text", texts, [=](auto& variable) {
            const std::string text = keld2::utf8(variable[index].text());
            if (length != nullptr) *length = text.size();
            if (size == 0) return;
            const std::size_t copied = std::min(text.size(), size - 1);
            std::copy_n(text.begin(), copied, buffer);
            buffer[copied] = 0;
        });
    });
}

int keld2_settext(keld2_session* session, const char* name, int64_t index, const char* text) {
    return call(session, [=](keld2_session& s) {
        need(text, "text");
        withcells(s, name, index, 1, "text", texts,
                  [=](auto& variable) { variable[index] = keld2::utf16(text); });
    });
}

int keld2_read(keld2_session* session, const char* name, int64_t index, uint8_t* bytes,
               size_t count) {
    return call(session, [=](keld2_session& s) {
        need(bytes, "bytes");
        withcells(s, name, index, count, "byte", bytecells,
                  [=](auto& variable) { std::copy_n(variable.data() + index, count, bytes); });
    });
}

int keld2_write(keld2_session* session, const char* name, int64_t index, const uint8_t* bytes,
                size_t count) {
    return call(session, [=](keld2_session& s) {
        need(bytes, "bytes");
        withcells(s, name, index, count, "byte", bytecells,
                  [=](auto& variable) { std::copy_n(bytes, count, variable.data() + index); });
    });
}

}  // extern "C"
