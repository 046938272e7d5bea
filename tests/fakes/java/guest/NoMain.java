package guest;

// A class without a main method.
public final class NoMain {
    private NoMain() {
    }
}
