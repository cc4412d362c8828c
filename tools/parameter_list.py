"""The parameters of a C++ function, as a declaration or a demangled symbol lists them."""


def split_parameters(text):
    """The parameters between the brackets of a function, white space folded; commas inside of < > separate none."""
    parts, depth, current = [], 0, ""
    for character in text:
        depth += {"<": 1, ">": -1}.get(character, 0)
        if character == "," and depth == 0:
            parts.append(current)
            current = ""
        else:
            current += character
    return [" ".join(part.split()) for part in parts + [current] if part.strip()]
