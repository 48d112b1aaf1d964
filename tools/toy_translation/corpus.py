"""Sentences of a toy language with their Spanish and Korean translations, made from patterns."""

import random

NOUNS = [  # English, Spanish, gender, Korean
    ("house", "casa", "f", "집"), ("book", "libro", "m", "책"), ("car", "coche", "m", "자동차"),
    ("table", "mesa", "f", "탁자"), ("dog", "perro", "m", "개"), ("cat", "gata", "f", "고양이"),
    ("river", "río", "m", "강"), ("city", "ciudad", "f", "도시"), ("school", "escuela", "f", "학교"),
    ("garden", "jardín", "m", "정원"), ("window", "ventana", "f", "창문"),
    ("letter", "carta", "f", "편지"), ("train", "tren", "m", "기차"), ("song", "canción", "f", "노래"),
    ("teacher", "profesora", "f", "선생님"), ("doctor", "médico", "m", "의사"),
    ("bridge", "puente", "m", "다리"), ("door", "puerta", "f", "문"), ("road", "camino", "m", "길"),
    ("island", "isla", "f", "섬")]
ADJECTIVES = [  # English, Spanish masculine and feminine, Korean
    ("red", "rojo", "roja", "빨간"), ("big", "grande", "grande", "큰"),
    ("small", "pequeño", "pequeña", "작은"), ("old", "viejo", "vieja", "오래된"),
    ("new", "nuevo", "nueva", "새로운"), ("white", "blanco", "blanca", "하얀"),
    ("quiet", "tranquilo", "tranquila", "조용한"),
    ("beautiful", "hermoso", "hermosa", "아름다운"), ("expensive", "caro", "cara", "비싼"),
    ("black", "negro", "negra", "검은")]
VERBS = [("sees", "ve", "봅니다"), ("buys", "compra", "삽니다"), ("finds", "encuentra", "찾습니다"),
         ("loves", "ama", "사랑합니다"), ("wants", "quiere", "원합니다"),
         ("remembers", "recuerda", "기억합니다"), ("paints", "pinta", "그립니다"),
         ("sells", "vende", "팝니다")]
PEOPLE = [("Maria", "María", "마리아는"), ("John", "Juan", "존은"),
          ("My brother", "Mi hermano", "내 형은"), ("The woman", "La mujer", "그 여자는"),
          ("She", "Ella", "그녀는"), ("He", "Él", "그는"),
          ("Our friend", "Nuestro amigo", "우리 친구는"), ("Nobody", "Nadie", "아무도")]
MONTHS = list(enumerate(zip(
    "January February March April May June July August September October November "
    "December".split(),
    "enero febrero marzo abril mayo junio julio agosto septiembre octubre noviembre "
    "diciembre".split()), 1))
DAYS = list(zip("Monday Tuesday Wednesday Thursday Friday Saturday Sunday".split(),
                "lunes martes miércoles jueves viernes sábado domingo".split(),
                "월요일 화요일 수요일 목요일 금요일 토요일 일요일".split()))
GREETINGS = [("Good morning", "Buenos días", "좋은 아침입니다"),
             ("Good night", "Buenas noches", "안녕히 주무세요"), ("Thank you", "Gracias", "감사합니다"),
             ("See you tomorrow", "Hasta mañana", "내일 봐요"), ("Welcome", "Bienvenidos", "환영합니다"),
             ("Excuse me", "Perdón", "실례합니다"), ("Hello", "Hola", "안녕하세요")]
NUMBERS = list(zip(
    "zero one two three four five six seven eight nine ten eleven twelve thirteen fourteen fifteen "
    "sixteen seventeen eighteen nineteen twenty".split(),
    "cero uno dos tres cuatro cinco seis siete ocho nueve diez once doce trece catorce quince "
    "dieciséis diecisiete dieciocho diecinueve veinte".split(),
    "영 일 이 삼 사 오 육 칠 팔 구 십 십일 십이 십삼 십사 십오 십육 십칠 십팔 십구 이십".split()))


def article(noun):
    return "el" if noun[2] == "m" else "la"


def matching(adjective, noun):
    return adjective[1] if noun[2] == "m" else adjective[2]


def capitalized(text):
    return text[0].upper() + text[1:]


def inside(text):
    """A subject in the middle of a sentence."""
    return text[0].lower() + text[1:] if " " in text else text


def sentence(r):
    """One sentence in English, Spanish and Korean."""
    pattern = r.randrange(9)
    noun, other = r.choice(NOUNS), r.choice(NOUNS)
    adjective, verb, who, day = (r.choice(x) for x in (ADJECTIVES, VERBS, PEOPLE, DAYS))
    if pattern == 0:
        return (f"The {adjective[0]} {noun[0]} is here.",
                f"{capitalized(article(noun))} {noun[1]} {matching(adjective, noun)} está aquí.",
                f"{adjective[3]} {noun[3]} 여기 있습니다.")
    if pattern == 1:
        return (f"{who[0]} {verb[0]} the {adjective[0]} {noun[0]}.",
                f"{who[1]} {verb[1]} {article(noun)} {noun[1]} {matching(adjective, noun)}.",
                f"{who[2]} {adjective[3]} {noun[3]} {verb[2]}.")
    if pattern == 2:
        (number, month), date = r.choice(MONTHS), r.randrange(1, 32)
        one = "un" if noun[2] == "m" else "una"
        return (f"On {day[0]}, {month[0]} {date}, {inside(who[0])} {verb[0]} a {noun[0]}.",
                f"El {day[1]} {date} de {month[1]}, {inside(who[1])} {verb[1]} {one} {noun[1]}.",
                f"{number}월 {date}일 {day[2]}에 {who[2]} {noun[3]} {verb[2]}.")
    if pattern == 3:
        greeting, name = r.choice(GREETINGS), r.choice(["Anna", "Peter", "Lucy", "Oscar", "Diego"])
        return (f"{greeting[0]}, {name}!", f"¡{greeting[1]}, {name}!", f"{greeting[2]}, {name}!")
    if pattern == 4:
        x, y = r.randrange(11), r.randrange(11)
        a, b, c = NUMBERS[x], NUMBERS[y], NUMBERS[x + y]
        return (f"{capitalized(a[0])} plus {b[0]} is {c[0]}.",
                f"{capitalized(a[1])} más {b[1]} son {c[1]}.", f"{a[2]} 더하기 {b[2]}은 {c[2]}입니다.")
    if pattern == 5:
        return (f"Where is the {noun[0]}, in the {other[0]}?",
                f"¿Dónde está {article(noun)} {noun[1]}, en {article(other)} {other[1]}?",
                f"{noun[3]} 어디에 있습니까, {other[3]}에?")
    if pattern == 6:
        price = r.randrange(100, 9999)
        return (f"The {noun[0]} costs {price} dollars.",
                f"{capitalized(article(noun))} {noun[1]} cuesta {price} dólares.",
                f"{noun[3]} 값은 {price} 달러입니다.")
    if pattern == 7:
        time = f"{r.randrange(24)}:{r.randrange(60):02d}"
        return (f"{who[0]} comes at {time} on {day[0]}.", f"{who[1]} viene a las {time} el {day[1]}.",
                f"{who[2]} {day[2]} {time}에 옵니다.")
    return (f"{who[0]} {verb[0]} the {noun[0]} and the {adjective[0]} {other[0]} because it is "
            f"{day[0]}.",
            f"{who[1]} {verb[1]} {article(noun)} {noun[1]} y {article(other)} {other[1]} "
            f"{matching(adjective, other)} porque es {day[1]}.",
            f"{day[2]}이라서 {who[2]} {noun[3]} 그리고 {adjective[3]} {other[3]} {verb[2]}.")


def corpus(seed, count):
    """`count` triples; the same for the same seed."""
    r = random.Random(seed)
    return [sentence(r) for _ in range(count)]
