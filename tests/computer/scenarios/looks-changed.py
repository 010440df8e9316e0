"""The desktop turns dark and its text larger while the program runs. The window follows, and looks the same when it is
opened again."""


def play(computer):
    if computer.recipe.turns_dark:
        light = computer.brightness()
        computer.turn_dark()
        computer.expect_darker_than(light)
    small = computer.height_of("push button", "Refresh Disks")
    computer.enlarge_text()
    tall = computer.height_of("push button", "Refresh Disks")
    computer.picture("enlarged")
    computer.close_window()
    computer.expect_program_ended()
    computer.start_program()
    computer.picture("opened-again")
    tall_again = computer.height_of("push button", "Refresh Disks")
    computer.expect_heights(small, tall if computer.recipe.enlarges_at_once else tall_again, tall_again)
