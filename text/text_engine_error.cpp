#include "text/text_engine_error.h"

namespace kivra {

TextEngineError TextEngineError::unsupportedPair(const std::string& pair) {
  return {Kind::unsupportedPair, "Языковая пара не поддерживается (" + pair + ")"};
}

TextEngineError TextEngineError::http(int statusCode, const std::string& body) {
  return {Kind::http, "HTTP " + std::to_string(statusCode), ": " + body};
}

TextEngineError TextEngineError::unsupported() {
  return {Kind::unsupported, "Движок не поддерживает эту операцию"};
}

TextEngineError TextEngineError::notConfigured() {
  return {Kind::notConfigured, "Движок не настроен (нет ключа или модель недоступна)"};
}

TextEngineError TextEngineError::busy() {
  return {Kind::busy, "Предыдущая операция ещё выполняется"};
}

TextEngineError TextEngineError::emptyResult() {
  return {Kind::emptyResult, "Пустой ответ движка"};
}

}  // namespace kivra
