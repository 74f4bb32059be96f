#include "Wendril/transport.hpp"

#include <system_error>
#include <utility>

namespace Wendril {

namespace {

std::string systemText(int error) { return std::generic_category().message(error); }

}  // namespace

TransportError TransportError::open(const std::string& target, int error) {
    return {Case::open, error, "Não foi possível abrir " + target + ": " + systemText(error)};
}

TransportError TransportError::configure(const std::string& path, int error) {
    return {Case::configure, error, "Não foi possível configurar " + path + ": " + systemText(error)};
}

TransportError TransportError::write(int error) {
    return {Case::write, error, "Falha ao enviar: " + systemText(error)};
}

TransportError TransportError::notOpen() { return {Case::notOpen, 0, "Conexão fechada"}; }

TransportError::TransportError(Case errorCase, int errorNumber, std::string text)
    : errorCase(errorCase)
    , errorNumber(errorNumber)
    , text(std::make_shared<const std::string>(std::move(text))) {}

void Transport::cancellableOpen(OnData onData, OnClose onClose, std::stop_token) {
    open(std::move(onData), std::move(onClose));
}

std::string describe(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

}  // namespace Wendril
