"""What tests say to the program in an engine's place."""

PROGRESS, STEP, NETWORK, END, ERROR, RESTART, CANCEL = range(7)
LONGEST_TEXT = 4096


def after(run, *messages):
    """The main window once these messages were handled."""
    for message_type, text in messages:
        run.send(message_type, text)
    run.send(STEP, "Traité")
    run.window.await_step("Traité")
    view = run.window.main()
    run.send(STEP, "Prêt")
    run.window.await_step("Prêt")
    return view
