"""The disk that holds the image no longer answers: in the middle of a write, which can be stopped, and before the next
one, when the window can be closed."""


def play(computer):
    computer.image_on_suspendable_disk("200M")
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-writing")
    computer.hang_disk_of_image()
    computer.rest(10)
    computer.stop()
    computer.expect_text("Operation cancelled. Writing was interrupted.", timeout=180, never="SD Card Is Safe to Remove")
    computer.expect_released(card)
    computer.free_disk_of_image()
    computer.rest(5)
    other = computer.insert_card()
    computer.choose_target(f"disk{computer.number_of(other)}\\b")
    computer.hang_disk_of_image()
    computer.confirm_write()
    computer.rest(5)
    computer.expect_answer_within(10)
    computer.close_window()
    computer.agree_to_quit()
    computer.expect_program_ended()
