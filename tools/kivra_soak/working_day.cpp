#include "working_day.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "support/text.h"

namespace kivra::soak {

namespace {

/// The letters of the Russian layout and, by turns with them, the keys that give them.
const std::map<std::string, char>& russianKeys() {
  static const auto keys = [] {
    constexpr auto lower = "йцукенгшщзхъфывапролджэячсмитьбюё.";
    constexpr std::string_view lowerKeys = "qwertyuiop[]asdfghjkl;'zxcvbnm,.`/";
    constexpr auto upper = "ЙЦУКЕНГШЩЗХЪФЫВАПРОЛДЖЭЯЧСМИТЬБЮЁ,";
    constexpr std::string_view upperKeys = "QWERTYUIOP{}ASDFGHJKL:\"ZXCVBNM<>~?";
    std::map<std::string, char> result;
    const auto add = [&](const char* letters, std::string_view names) {
      std::size_t i = 0;
      for (const auto& letter : text::characters(letters)) result[letter] = names[i++];
    };
    add(lower, lowerKeys);
    add(upper, upperKeys);
    return result;
  }();
  return keys;
}

}  // namespace

const std::vector<std::string>& lines() {
  static const std::vector<std::string> lines = {
      "Сегодня утром пришло письмо от заказчика",
      "Нужно проверить расчёты, потом отправить отчёт до обеда.",
      "встреча начнётся в десять часов",
      "Вечером обсудим планы на следующий месяц.",
      "документы лежат в общей папке",
      "Прошу посмотреть последнюю версию текста.",
      "если будут вопросы, звони после трёх",
      "Погода сегодня хорошая, можно пойти пешком.",
      "деньги пришли вчера вечером",
      "завтра приедет новый сотрудник из Москвы",
      "Огромное спасибо за помощь с переводом!",
      "работа идёт хорошо, но времени мало",
      "Поезд опоздал на двадцать минут.",
      "осталось исправить две ошибки",
      "Книга стоит на верхней полке",
      "купи молоко, хлеб и яблоки",
      "Доброе утро, коллеги!",
      "сообщение отправлено всем участникам",
      "вечером поедем за город",
      "Today the meeting starts at ten in the morning",
      "Please send the report before lunch.",
      "we should check the numbers again",
      "Thank you for your help with this project.",
      "another letter came from the customer",
      "Again the weather is good today, so we can walk.",
      "there are two errors left in the text",
      "Our new colleague arrives tomorrow.",
      "money came yesterday evening",
      "Could you look at the last version?",
      "documents are in the shared folder",
      "Last train was late by twenty minutes.",
      "Please write your questions, call after three",
      "Work is going well, but time is short.",
      "My computer is slow again",
      "Everything was ready on Friday",
      "This book stands on the upper shelf",
      "message was sent to all members",
      "Good morning everyone!",
      "Every answer is simple",
      "открой файл report и посмотри",
      "Отправь customer письмо сегодня",
      "Russian привет means hello",
      "Наш project почти готов",
      "в папке documents лежит текст",
      "посмотри message от директора",
      "Please сделай это today",
      "новая версия program работает",
  };
  return lines;
}

const std::vector<std::string>& words() {
  static const std::vector<std::string> words = {
      "окно",    "дверь",   "стена",  "дорога", "машина", "город",  "улица",   "школа",  "учитель",
      "вечер",   "зима",    "лето",   "весна",  "осень",  "рыба",   "птица",   "дерево", "трава",
      "цветок",  "вода",    "огонь",  "земля",  "небо",   "солнце", "звезда",  "берег",  "остров",
      "гора",    "лес",     "поле",   "река",   "море",   "window", "table",   "garden", "school",
      "teacher", "evening", "night",  "winter", "summer", "spring", "autumn",  "bread",  "bird",
      "tree",    "grass",   "flower", "water",  "fire",   "earth",  "heaven",  "island", "mountain",
      "forest",  "field",   "river",  "letter", "pencil", "bottle", "kitchen", "mirror"};
  return words;
}

const std::vector<std::string>& undoneWords() {
  static const std::vector<std::string> words = {"огурец", "капуста", "морковь", "тарелка",
                                                 "ложка",  "вилка",   "butter",  "cheese",
                                                 "pepper", "spoon",   "dinner",  "breakfast"};
  return words;
}

const std::vector<Mend>& slips() {
  static const std::vector<Mend> slips = {{"ПРивет", "Привет"},
                                          {"МОсква", "Москва"},
                                          {"СЕгодня", "Сегодня"},
                                          {"ПОнедельник", "Понедельник"},
                                          {"ДИректор", "Директор"},
                                          {"HEllo", "Hello"},
                                          {"MOnday", "Monday"},
                                          {"REport", "Report"},
                                          {"MEssage", "Message"},
                                          {"LEtter", "Letter"},
                                          {"програма", "программа"},
                                          {"коментарий", "комментарий"},
                                          {"клавеатура", "клавиатура"},
                                          {"проблемма", "проблема"},
                                          {"здраствуйте", "здравствуйте"},
                                          {"грамотнасть", "грамотность"},
                                          {"definately", "definitely"},
                                          {"begining", "beginning"},
                                          {"diferent", "different"},
                                          {"immediatly", "immediately"},
                                          {"neccessary", "necessary"},
                                          {"occurence", "occurrence"},
                                          {"succesful", "successful"},
                                          {"tommorrow", "tomorrow"}};
  return slips;
}

const Mend& replacement() {
  static const Mend replacement = {"smile", "é Ünï 😀 → ёлки ok"};
  return replacement;
}

bool isRussian(const std::string& word) {
  const auto first = text::firstCharacter(word);
  return first.size() > 1 && russianKeys().contains(std::string(first));
}

std::string keysOf(const std::string& text) {
  std::string keys;
  bool isInRussian = false;
  bool isFirst = true;
  for (const auto& character : text::characters(text)) {
    const std::string letter(character);
    if (isFirst) isInRussian = isRussian(letter);
    isFirst = letter == " ";
    const auto key = russianKeys().find(letter);
    const auto isKnown = isInRussian && key != russianKeys().end();
    keys += isKnown ? std::string(1, key->second) : letter;
  }
  return keys;
}

std::string inRussian(const std::string& keys) {
  std::string result;
  for (const auto key : keys) {
    const auto letter =
        std::ranges::find(russianKeys(), key, &std::pair<const std::string, char>::second);
    result += letter == russianKeys().end() ? std::string(1, key) : letter->first;
  }
  return result;
}

}  // namespace kivra::soak
